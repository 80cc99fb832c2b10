#ifndef VESK_LOGIN_VESKCURRENTLOGIN_H
#define VESK_LOGIN_VESKCURRENTLOGIN_H

#include <cstdint>
#include <deque>
#include <functional>
#include <string>

#include "module/veskmutex.h"

namespace Braxel {
namespace VESK {

/// Which login is the one that the game waits for, and which were taken back. Any thread may call
/// it; it neither waits nor writes to the log.
class VESKCurrentLogin {
public:
    /// @return the login's number among all of the process; 0 for one that a newer login has
    ///         overtaken before it began.
    uint64_t Begin(const std::string& seqID);

    /// @param current receives the one that is current.
    bool Is(const std::string& seqID, std::string& current);

    /// Calls @p change if @p seqID is current, and lets none begin meanwhile.
    void IfIs(const std::string& seqID, const std::function<void()>& change);

    /// A login has one success, which is stored before the game hears of it. Whatever else answers
    /// the login meanwhile must not be heard instead.
    /// @return whether it may be stored.
    bool Close(const std::string& seqID);

    /// The success that is stored for @p seqID got lost on its way to the game: a failure counts.
    void Reopen(const std::string& seqID);

    /// Whether the result of @p seqID is the one that the game waits for; true only once.
    /// @param isSuccess a failure is not what it waits for once a success is stored.
    bool End(const std::string& seqID, bool isSuccess);

    /// Takes the login @p seqID back, also one that has not begun yet: it is not stored, and the
    /// game hears nothing of it.
    /// @param logOut when the backend logs the player in all the same, log out there again.
    /// @return false when its success is stored: then that counts.
    bool Withdraw(const std::string& seqID, bool logOut);

    bool IsWithdrawn(const std::string& seqID);

    /// Whether to log out at the backend what @p seqID has logged in there; true only once.
    bool TakeLogOut(const std::string& seqID);

private:
    struct Withdrawn {
        std::string seqID;
        bool logOut;
    };
    Withdrawn* FindWithdrawn(const std::string& seqID); // with mMutex held

    VESKMutex mMutex; // guards what follows
    std::string mSeqID;
    std::string mStoredSeqID; // the login whose success is stored
    uint64_t mCount = 0;
    std::deque<Withdrawn> mWithdrawn; // the latest of them: their answers are still to come
};

} // namespace VESK
} // namespace Braxel

#endif
