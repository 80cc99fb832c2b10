// Callbacks of Ferno's component, through its plugin. An input is a series of callbacks.
#include <fuzzer/FuzzedDataProvider.h>
#include <rapidjson/document.h>
#include <string>
#include <vector>

#include "common/veskdefine.h"
#include "common/veskids.h"
#include "expect.h"
#include "platformimpl/login/veskferno/veskfrcallbacks.h"
#include "platformimpl/login/veskferno/veskfrwrapper.h"
#include "platformimpl/login/veskferno/veskloginferno.h"
#include "vesk/veskerror.h"

using namespace Braxel::VESK;
using vesk::fuzz::expect;

namespace {

int answers = 0; ///< to one callback

void onCredential(const InnerLoginPluginRet& ret, const char* seqID) {
    ++answers;
    expect(std::string(seqID) == "1-1", "an answer belongs to the last request");
    rapidjson::Document info;
    info.Parse(ret.channelInfo.data(), ret.channelInfo.size());
    expect(!info.HasParseError() && info.IsObject() && info.MemberCount() == 2,
           "a credential is an object of two members");
    const auto& openid = info["openid"];
    const std::string shown(openid.GetString(), openid.GetStringLength());
    expect(shown == ret.uid, "a credential names the player whom the answer names");
}

void onQrCode(const InnerQrCodeRet& ret, const char*) {
    ++answers;
    expect(ret.retCode == VESKError::SUCCESS, "a code is no failure");
}

void onFailure(const InnerLoginRet& ret, const char*) {
    ++answers;
    expect(ret.retCode == VESKError::CHANNEL_LOGIN_FAILED, "only the channel fails here");
}

FrCallbackTable* startLogin() {
    using Credential = VESKInnerObserverHolder<InnerLoginPluginRet>;
    Credential::Register(kObserverIDPluginLogin, &onCredential);
    Credential::Register(kObserverIDPluginRefresh, &onCredential);
    VESKInnerObserverHolder<InnerQrCodeRet>::Register(kObserverIDQrCodeRet, &onQrCode);
    VESKInnerObserverHolder<InnerLoginRet>::Register(kObserverIDLoginRet, &onFailure);
    // There is no component: no answer.
    VESKLoginFerno::GetInstance()->QrCodeLogin("1-1", "pre", 1);
    VESKFRWrapper::GetInstance()->SetNotify(VESKLoginFerno::GetInstance());
    return VESKFRCallbacks::MakeTable();
}

/// In memory of just its size, as a careless component passes it.
std::vector<char> takeText(FuzzedDataProvider& input) {
    const std::string text = input.ConsumeRandomLengthString(64);
    return std::vector<char>(text.begin(), text.end());
}

void callBack(const FrCallbackTable& table, FuzzedDataProvider& input) {
    const std::vector<char> texts[] = {takeText(input), takeText(input), takeText(input)};
    const auto text = [&texts](int at) { return texts[at].empty() ? nullptr : texts[at].data(); };
    const auto length = [&texts](int at) { return static_cast<uint32_t>(texts[at].size()); };
    const uint32_t type = input.PickValueInArray<uint32_t>({0, 0, 1, 10008, 0xFFFFFFFF});
    const int32_t code = input.ConsumeIntegral<int32_t>();
    const uint64_t tick = input.ConsumeIntegral<uint64_t>();
    switch (input.ConsumeIntegralInRange(0, 4)) {
    case 0:
        return table.qrcodeResp(type, code, text(0), length(0), tick, tick);
    case 1:
        return table.onKickOut(code);
    case 2:
        return table.onUserStateException();
    case 3:
        return table.clientTmpTokenResp(type, code, text(0), length(0), text(1), length(1), text(2),
                                        length(2), type, tick);
    default:
        return table.loginResp(type, code, text(0), length(0), text(1), length(1), text(2),
                               length(2), type, tick);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const FrCallbackTable& table = *startLogin();
    FuzzedDataProvider input(data, size);
    while (input.remaining_bytes() > 0) {
        answers = 0;
        callBack(table, input);
        expect(answers <= 1, "a callback has one answer at most");
    }
    return 0;
}
