#ifndef VESK_DEVKIT_BACKEND_ANSWERS_REQUESTLOG_H
#define VESK_DEVKIT_BACKEND_ANSWERS_REQUESTLOG_H

#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "checks/contract.h"
#include "server/waitingroom.h"

namespace vesk::backend {

/// One request and what became of it.
struct LoggedRequest {
    ReceivedRequest request;
    /// "ok", or what is wrong with the request.
    std::string verdict;
    bool scripted = false;
    /// The HTTP status of the answer; 0 when none is sent.
    int status = 0;
    /// The code of the finding, 0 for a good request.
    int ret = 0;
    std::chrono::system_clock::time_point received = std::chrono::system_clock::now();
    /// Counts up from 1; the log sets it.
    uint64_t number = 0;
};

/// Keeps the requests in the order they came. Safe to use from several threads.
class RequestLog {
public:
    /// @param waitingRoom hears of every change
    explicit RequestLog(WaitingRoom& waitingRoom) : mWaitingRoom(waitingRoom) {}

    void add(const LoggedRequest& entry);

    /// The whole log as a JSON array, oldest request first.
    std::string toJson() const;

    /// The newest requests, @p count at most, oldest first.
    std::vector<LoggedRequest> latest(size_t count) const;

    /// A number that is another one after each change.
    uint64_t lastChange() const;

    void clear();

private:
    WaitingRoom& mWaitingRoom;
    mutable std::mutex mMutex;
    uint64_t mLastNumber = 0;
    uint64_t mLastChange = 0;
    std::vector<LoggedRequest> mEntries;
};

} // namespace vesk::backend

#endif
