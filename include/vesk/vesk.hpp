/// @file
/// The SDK for C++17 programs of any compiler, over vesk_c.h alone. Throws only std::bad_alloc.
#ifndef VESK_VESK_HPP
#define VESK_VESK_HPP

#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "vesk/vesk_c.h"

namespace vesk {
/// What every result carries. Records are copies, yours to keep; vesk_c.h explains the members.
struct BaseRet {
    /// As in vesk_base_ret; any record of vesk_c.h has them. @{
    int32_t methodNameID = 0, retCode = -1, thirdCode = -1;
    std::string retMsg, thirdMsg, extraJson;
    BaseRet() = default;
    template <typename Record, typename = decltype(Record::struct_size)>
    explicit BaseRet(const Record& r)
        : methodNameID(r.method_name_id), retCode(r.ret_code), thirdCode(r.third_code),
          retMsg(r.ret_msg), thirdMsg(r.third_msg), extraJson(r.extra_json) {} ///@}
};

/// The result of a login.
struct LoginRet : BaseRet {
    /// As in vesk_login_ret. @{
    int64_t tokenExpire = 0;
    int32_t firstLogin = 0, gender = 0, channelID = 0;
    bool realNameAuth = false;
    std::string channel, channelInfo, openid, token, regChannelDis, userName, birthdate, pictureUrl;
    std::string pf, pfKey;
    LoginRet() = default;
    explicit LoginRet(const vesk_login_ret& r)
        : BaseRet(r), tokenExpire(r.token_expire), firstLogin(r.first_login), gender(r.gender),
          channelID(r.channel_id), realNameAuth(r.real_name_auth != 0), channel(r.channel),
          channelInfo(r.channel_info), openid(r.openid), token(r.token),
          regChannelDis(r.reg_channel_dis), userName(r.user_name), birthdate(r.birthdate),
          pictureUrl(r.picture_url), pf(r.pf), pfKey(r.pf_key) {} ///@}
};
/// A QR code that the player is to scan.
struct QrCodeRet : BaseRet {
    /// As in vesk_qr_code_ret. @{
    int32_t channelID = 0;
    std::string channel, qrCodeUrl;
    QrCodeRet() = default;
    explicit QrCodeRet(const vesk_qr_code_ret& r)
        : BaseRet(r), channelID(r.channel_id), channel(r.channel), qrCodeUrl(r.qr_code_url) {} ///@}
};

/// The game's functions for results; an empty one is not called, an exception out of one is lost.
/// @thread As for vesk_login_observer, but one at a time. None may wait for the Observer's end.
struct Callbacks {
    std::function<void(const LoginRet&)> onLogin;   ///< a login ended
    std::function<void(const BaseRet&)> onBase;     ///< a logout ended (117)
    std::function<void(const QrCodeRet&)> onQrCode; ///< show it; may come again
};

namespace detail { // not for games
/// The callbacks of one Observer. Who holds the mutex can end them.
struct Registration {
    const Callbacks callbacks;
    std::recursive_mutex mutex;
    bool retired = false;
};

/// Whose turn it is. Never destroyed: the SDK's threads may outlive main.
struct Slot {
    std::mutex mutex;
    std::shared_ptr<Registration> current;
};
inline Slot& slot = *new Slot;
template <typename Ret, auto Function, typename Record>
void deliver(const Record* record, void*) noexcept try {
    std::unique_lock<std::mutex> slotLock(slot.mutex);
    const std::shared_ptr<Registration> now = slot.current;
    slotLock.unlock();
    if (now != nullptr) {
        const std::lock_guard<std::recursive_mutex> lock(now->mutex);
        if (!now->retired && now->callbacks.*Function) {
            (now->callbacks.*Function)(Ret(*record));
        }
    }
} catch (...) { // there is nobody to tell: the caller is the library
}
} // namespace detail
/// Sets callbacks as the one observer of the process for as long as it lives; a newer one replaces
/// them. Its end waits for a callback that another thread is in: none runs afterwards.
class Observer {
public:
    /// Registers a copy of the callbacks.
    explicit Observer(const Callbacks& callbacks)
        : mRegistration(new detail::Registration{callbacks, {}, false}) {
        const vesk_login_observer observer = {
            sizeof observer, nullptr,
            &detail::deliver<LoginRet, &Callbacks::onLogin, vesk_login_ret>,
            &detail::deliver<BaseRet, &Callbacks::onBase, vesk_base_ret>,
            &detail::deliver<QrCodeRet, &Callbacks::onQrCode, vesk_qr_code_ret>};
        const std::lock_guard<std::mutex> lock(detail::slot.mutex);
        detail::slot.current = mRegistration;
        vesk_set_login_observer(&observer);
    }
    ~Observer() {
        std::unique_lock<std::mutex> slotLock(detail::slot.mutex);
        if (detail::slot.current == mRegistration) {
            detail::slot.current.reset();
            vesk_set_login_observer(nullptr);
        }
        slotLock.unlock();
        const std::lock_guard<std::recursive_mutex> lock(mRegistration->mutex);
        mRegistration->retired = true;
    }
    Observer(const Observer&) = delete;

private:
    const std::shared_ptr<detail::Registration> mRegistration;
};

/// The operation of this name in vesk_c.h. @{
inline void login(const std::string& channel, const std::string& permissions = "",
                  const std::string& subChannel = "", const std::string& extraJson = "") {
    vesk_login(channel.c_str(), permissions.c_str(), subChannel.c_str(), extraJson.c_str());
}
inline void autoLogin() {
    vesk_auto_login();
}
/// Fills @p ret in either case; see vesk_get_login_ret.
inline bool getLoginRet(LoginRet& ret) {
    vesk_login_ret* copy = nullptr;
    const bool held = vesk_get_login_ret(&copy) != 0;
    const std::shared_ptr<vesk_login_ret> owner(copy, &vesk_login_ret_free);
    ret = copy != nullptr ? LoginRet(*copy) : LoginRet();
    return held;
}
inline void logout(const std::string& channel = "", const std::string& subChannel = "",
                   bool channelOnly = false) {
    vesk_logout(channel.c_str(), subChannel.c_str(), channelOnly ? 1 : 0);
} ///@}
/// As vesk_uninstall. An Observer that is still there hears nothing more, and may end later.
inline void uninstall() {
    std::unique_lock<std::mutex> lock(detail::slot.mutex);
    detail::slot.current.reset();
    lock.unlock();
    vesk_uninstall();
}
} // namespace vesk
#include "vesk/vesk_mainloop.hpp"
#endif
