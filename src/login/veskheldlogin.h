#ifndef VESK_LOGIN_VESKHELDLOGIN_H
#define VESK_LOGIN_VESKHELDLOGIN_H

#include <cstdint>
#include <functional>
#include <memory>

#include "common/veskinnerrecords.h"
#include "module/veskmutex.h"

namespace Braxel {
namespace VESK {

/// The login that is held, in memory and in the device file. Any thread may call it. A record that
/// was read may be another's by the time that its change is stored, so each change tells of which
/// login or record it is.
class VESKHeldLogin {
public:
    VESKHeldLogin();

    /// What is held, as it is: never null, empty when nothing is. Neither waits nor writes to the
    /// log.
    std::shared_ptr<const InnerLoginRet> Record();

    /// Reads the login that is held, or what the device remembers of an earlier one.
    /// @return whether one is held. An expired one is, with retCode TOKEN_EXPIRED.
    bool Get(InnerLoginRet& out);

    /// @return whether the device file was written. Only then is @p ret held.
    bool Save(const InnerLoginRet& ret);

    /// Saves @p ret as a login that has succeeded, if @p mayBeStored says yes. It is asked with the
    /// store locked, so that no other login comes between.
    /// @return what it said.
    bool SaveLogin(const InnerLoginRet& ret, const std::function<bool()>& mayBeStored);

    /// @return whether the device file was removed.
    bool Drop();

    /// Drops it for a login that @p begin begins, unless that says no. In one, or the older of two
    /// logins would drop what the newer has brought already.
    void DropFor(const std::function<bool()>& begin);

    /// Drops the login for which a channel has logged out, but none that has followed it meanwhile.
    /// @param storedLogins StoredLogins() when the logout began.
    void DropLoginOf(uint64_t storedLogins);

    /// Moves with each login that succeeds.
    uint64_t StoredLogins();

    /// Merges the JSON object @p loginData into the held login and gives the result in @p out.
    void Update(const String& loginData, InnerLoginRet& out);

    /// The channel is about to be asked for a fresh token of the login that is held: its answer is
    /// for no other one.
    void NoteRefresh();

    /// Takes the fresh token of a channel's answer over.
    void Refresh(const InnerLoginPluginRet& answer);

private:
    bool IsEmpty();
    bool CheckExpiry(InnerLoginRet& out);
    bool ReadDeviceCache(InnerLoginRet& out);
    uint64_t StoreGeneration();

    // With mStoreMutex held.
    bool Store(const InnerLoginRet& ret);
    bool DropRecord();

    bool StoreChanged(const InnerLoginRet& ret, uint64_t generation);

    VESKMutex mLoginRetMutex; // guards the pointer; a record is never changed once it is held
    std::shared_ptr<const InnerLoginRet> mLoginRet;

    // One user of the device file at a time; taken before mLoginRetMutex and VESKCurrentLogin's
    // mMutex. It guards the four below.
    VESKMutex mStoreMutex;
    uint64_t mStoreGeneration = 0; // moves with each change of the held record
    uint64_t mStoredLogins = 0;    // moves with each login that succeeds
    uint64_t mHeldLogin = 0;       // moves with each login and logout, but with no refresh
    uint64_t mRefreshedLogin = 0;  // has asked for a fresh token; 0: none, or it has come
};

} // namespace VESK
} // namespace Braxel

#endif
