#ifndef VESK_DEVKIT_BACKEND_ANSWERS_MEMORY_H
#define VESK_DEVKIT_BACKEND_ANSWERS_MEMORY_H

#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "checks/requestcheck.h"
#include "server/waitingroom.h"

namespace vesk::backend {

/// One login as the backend hands it out.
struct IssuedLogin {
    std::string openid;
    std::string uid;
    std::string token;
    /// Whether the account logs in for the first time.
    bool first = false;
};

/// Remembers what was handed out for as long as the backend runs; a logout does not revoke a login.
/// Safe to use from several threads.
class Issued {
public:
    /// Hands out a login: always the same openid for a player, a fresh token each time.
    IssuedLogin login(const std::string& channelId, const std::string& channelUserId);

    /// Remembers a login that a scripted answer handed out.
    void adoptLogin(const std::string& channelId, const std::string& openid,
                    const std::string& token);

    /// Whether a logout names a login that was handed out, on the channel it was made on.
    Problem checkLogout(const std::string& channelId, const std::string& openid,
                        const std::string& token) const;

    /// Hands out a pre-code that nobody has seen before.
    /// @param seq the sequence id of the request, empty when it has none
    std::string preCode(const std::string& seq);

    /// The sequence id that a pre-code was handed out for; empty when it is not known. A QR code
    /// that is made of it can be told from others by that.
    std::string seqOf(const std::string& preCode) const;

private:
    mutable std::mutex mMutex;
    std::set<std::string> mOpenids;
    /// From openid and token to the channel id of the login.
    std::map<std::pair<std::string, std::string>, std::string> mChannelIds;
    /// From pre-code to sequence id.
    std::map<std::string, std::string> mSeqs;
};

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
