/// @file
/// Every request that came.
#ifndef VESK_DEVKIT_BACKEND_REQUESTLOG_H
#define VESK_DEVKIT_BACKEND_REQUESTLOG_H

#include "receivedrequest.h"

#include <mutex>
#include <string>
#include <vector>

namespace vesk::backend {

/// One request and what became of it.
struct LoggedRequest {
    ReceivedRequest request;
    /// "ok", or what is wrong with the request.
    std::string verdict;
    bool scripted = false;
    /// The HTTP status of the answer; 0 when none is sent.
    int status = 0;
};

/// Keeps the requests in the order they came. Safe to use from several threads.
class RequestLog {
public:
    void add(const LoggedRequest& entry);

    /// The whole log as a JSON array, oldest request first.
    std::string toJson() const;

    void clear();

private:
    mutable std::mutex mMutex;
    std::vector<LoggedRequest> mEntries;
};

} // namespace vesk::backend

#endif // VESK_DEVKIT_BACKEND_REQUESTLOG_H
