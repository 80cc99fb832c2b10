#ifndef VESK_DEVKIT_BACKEND_ANSWERS_ISSUED_H
#define VESK_DEVKIT_BACKEND_ANSWERS_ISSUED_H

#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "checks/contract.h"

namespace vesk::backend {

/// One login as the backend hands it out.
struct IssuedLogin {
    std::string openid;
    std::string uid;
    std::string token;
    /// Whether the account logs in for the first time.
    bool first = false;
};

/// Remembers every pair of openid and token for as long as the backend runs; a logout does not
/// revoke it. Safe to use from several threads.
class IssuedLogins {
public:
    /// Hands out a login: always the same openid for a player, a fresh token each time.
    IssuedLogin issue(const std::string& channelId, const std::string& channelUserId);

    /// Remembers a login that a scripted answer handed out.
    void adopt(const std::string& channelId, const std::string& openid, const std::string& token);

    /// Checks that a logout names a login that was handed out, on the channel it was made on.
    std::optional<Problem> check(const std::string& channelId, const std::string& openid,
                                 const std::string& token) const;

private:
    mutable std::mutex mMutex;
    std::set<std::string> mOpenids;
    /// From openid and token to the channel id of the login.
    std::map<std::pair<std::string, std::string>, std::string> mChannelIds;
};

/// Remembers which login each pre-code was for, so that the QR code that is made of it can be told
/// from others. Safe to use from several threads.
class IssuedPreCodes {
public:
    /// Hands out a pre-code that nobody has seen before.
    /// @param seq the sequence id of the request, empty when it has none
    std::string issue(const std::string& seq);

    /// The sequence id that a pre-code was handed out for; empty when it is not known.
    std::string seqOf(const std::string& preCode) const;

private:
    mutable std::mutex mMutex;
    std::map<std::string, std::string> mSeqs;
};

} // namespace vesk::backend

#endif
