#include <cstdint>
#include <string>

#include "cinterface/veskcobserver.h"
#include "cinterface/veskcrecords.h"
#include "login/veskguarded.h"
#include "mainloop/veskmainloop.h"
#include "module/veskmodule.h"
#include "module/veskversion.h"
#include "vesk/vesk_c.h"
#include "vesk/vesklogin.h"

using Braxel::VESK::kSdkVersion;
using Braxel::VESK::UnlessEnded;
using Braxel::VESK::VESKCObserver;
using Braxel::VESK::VESKHeldLoginRet;
using Braxel::VESK::VESKLogin;
using Braxel::VESK::VESKLoginRet;
using Braxel::VESK::VESKMainLoop;
using Braxel::VESK::VESKModule;

namespace {

/// The numbers of "5.0.000.0005", each in a byte of the result.
constexpr uint32_t VersionNumber() {
    uint32_t number = 0;
    uint32_t part = 0;
    for (const char* c = kSdkVersion; *c != '\0'; ++c) {
        if (*c == '.') {
            number = number << 8 | part;
            part = 0;
        } else {
            part = part * 10 + static_cast<uint32_t>(*c - '0');
        }
    }
    return number << 8 | part;
}
static_assert(VersionNumber() >= 0x05000005, "a part of the version is missing");

using Kind = VESKMainLoop::Call::Kind;

std::string Text(const char* text) {
    return text != nullptr ? text : "";
}

/// Hands an operation to the main loop's worker.
/// @return false when the caller has to run it.
bool TakenOver(Kind kind, const char* channel, const char* permissions, const char* subChannel,
               const char* extraJson, bool channelOnly = false) noexcept {
    VESKMainLoop* loop = VESKMainLoop::Existing();
    try {
        return loop != nullptr && loop->Take({kind, Text(channel), Text(permissions),
                                              Text(subChannel), Text(extraJson), channelOnly, 0});
    } catch (...) { // there is no memory for it: it may still run
        return false;
    }
}

} // namespace

const char* vesk_version(void) {
    return kSdkVersion;
}

uint32_t vesk_version_number(void) {
    return VersionNumber();
}

int32_t vesk_set_login_observer(const vesk_login_observer* observer) {
    int32_t set = 0;
    UnlessEnded("Braxel::VESK::VESKLogin::SetLoginObserver", [&] {
        VESKCObserver* adapter = VESKCObserver::GetInstance();
        if (adapter->Set(observer)) {
            VESKLogin::SetLoginObserver(observer != nullptr ? adapter : nullptr);
            set = 1;
        }
    });
    return set;
}

void vesk_login(const char* channel, const char* permissions, const char* sub_channel,
                const char* extra_json) {
    const VESKModule::Use use; // the texts' copies are freed in here
    if (!TakenOver(Kind::kLogin, channel, permissions, sub_channel, extra_json)) {
        VESKLogin::Login(channel, permissions, sub_channel, extra_json);
    }
}

void vesk_auto_login(void) {
    if (!TakenOver(Kind::kAutoLogin, nullptr, nullptr, nullptr, nullptr)) {
        VESKLogin::AutoLogin();
    }
}

int32_t vesk_get_login_ret(vesk_login_ret** login_ret) {
    bool held = false;
    if (login_ret != nullptr) {
        *login_ret = nullptr;
    }
    UnlessEnded("Braxel::VESK::VESKLogin::GetLoginRet", [&] {
        VESKLoginRet ret;
        held = VESKLogin::GetLoginRet(ret);
        if (login_ret != nullptr) {
            *login_ret = new VESKHeldLoginRet(ret);
        }
    });
    return held ? 1 : 0;
}

void vesk_login_ret_free(vesk_login_ret* login_ret) {
    const VESKModule::Use use;
    delete static_cast<VESKHeldLoginRet*>(login_ret);
}

void vesk_logout(const char* channel, const char* sub_channel, int32_t channel_only) {
    const VESKModule::Use use; // the texts' copies are freed in here
    if (!TakenOver(Kind::kLogout, channel, nullptr, sub_channel, nullptr, channel_only != 0)) {
        VESKLogin::Logout(channel, sub_channel, channel_only != 0);
    }
}

void vesk_uninstall(void) {
    VESKLogin::UnInstall();
}

int32_t vesk_switch_user(int32_t use_launch_user) {
    return VESKLogin::SwitchUser(use_launch_user != 0) ? 1 : 0;
}

void vesk_bind(const char* channel, const char* permissions, const char* sub_channel,
               const char* extra_json) {
    VESKLogin::Bind(channel, permissions, sub_channel, extra_json);
}

void vesk_login_with_confirm_code(int32_t action_type, const char* confirm_code,
                                  const char* extra_json) {
    VESKLogin::LoginWithConfirmCode(action_type, confirm_code, extra_json);
}

void vesk_query_user_info(void) {
    VESKLogin::QueryUserInfo();
}

void vesk_reset_guest(void) {
    VESKLogin::ResetGuest();
}
