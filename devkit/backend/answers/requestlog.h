#ifndef VESK_DEVKIT_BACKEND_ANSWERS_REQUESTLOG_H
#define VESK_DEVKIT_BACKEND_ANSWERS_REQUESTLOG_H

#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "checks/requestcheck.h"
#include "server/waitingroom.h"

namespace vesk::backend {

/// One request and what became of it.
struct LoggedRequest {
    ReceivedRequest request;
    Problem problem;
    bool scripted = false;
    /// The HTTP status of the answer; 0 when none is sent.
    int status = 0;
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

    /// The newest @p count requests as a JSON array, oldest first; of each text @p maxBytes at
    /// most.
    std::string toJson(size_t count = SIZE_MAX, size_t maxBytes = std::string::npos) const;

    void clear();

private:
    WaitingRoom& mWaitingRoom;
    mutable std::mutex mMutex;
    uint64_t mLastNumber = 0;
    std::vector<LoggedRequest> mEntries;
};

} // namespace vesk::backend

#endif
