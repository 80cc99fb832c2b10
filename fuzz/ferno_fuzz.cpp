// Events of the messengers' components, through their plugins: property bags of KZ and callbacks of
// Ferno. An input is a series of events.
#include <fuzzer/FuzzedDataProvider.h>
#include <memory>
#include <rapidjson/document.h>
#include <string>
#include <vector>

#include "common/veskdefine.h"
#include "common/veskids.h"
#include "expect.h"
#include "platformimpl/login/veskferno/veskfrcallbacks.h"
#include "platformimpl/login/veskferno/veskfrwrapper.h"
#include "platformimpl/login/veskferno/veskloginferno.h"
#include "platformimpl/login/veskkz/veskkzwrapper.h"
#include "platformimpl/login/veskkz/veskloginkz.h"
#include "support/scriptedkz.h"
#include "vesk/veskerror.h"

using namespace Braxel::VESK;
using vesk::fuzz::expect;
using vesk::test::Bag;

namespace {

int answers = 0; ///< to one event

void onCredential(const InnerLoginPluginRet& ret, const char* seqID) {
    ++answers;
    expect(std::string(seqID) == "1-1", "an answer belongs to the last request");
    expect(ret.channelID == 1 || ret.channelID == 2, "an answer comes from a messenger");
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

class Messengers {
public:
    Messengers() {
        using Credential = VESKInnerObserverHolder<InnerLoginPluginRet>;
        Credential::Register(kObserverIDPluginLogin, &onCredential);
        Credential::Register(kObserverIDPluginRefresh, &onCredential);
        VESKInnerObserverHolder<InnerQrCodeRet>::Register(kObserverIDQrCodeRet, &onQrCode);
        VESKInnerObserverHolder<InnerLoginRet>::Register(kObserverIDLoginRet, &onFailure);
        VESKKZWrapper::GetInstance()->UseComponent(
            [this] { return std::make_unique<vesk::test::ScriptedKZ>(mScript); });
        VESKLoginKZ::GetInstance()->QrCodeLogin("1-1", "pre", 1);
        // There is no component: no answer.
        VESKLoginFerno::GetInstance()->QrCodeLogin("1-1", "pre", 1);
        VESKFRWrapper::GetInstance()->SetNotify(VESKLoginFerno::GetInstance());
    }

    void sendKZ(FuzzedDataProvider& input) {
        Bag bag = takeBag(input);
        if (input.ConsumeBool()) {
            bag.entry = std::make_shared<Bag>(takeBag(input));
        }
        bag.listSize = input.ConsumeIntegralInRange(-2, 2);
        mScript.takesLocalUser = input.ConsumeBool();
        const int32_t type = input.ConsumeIntegralInRange(-1, 12);
        mScript.send(type, input.ConsumeIntegralInRange(0, 15) == 0 ? nullptr : &bag);
    }

    void sendFerno(FuzzedDataProvider& input) {
        const std::vector<char> texts[] = {takeText(input), takeText(input), takeText(input)};
        const auto text = [&texts](int at) {
            return texts[at].empty() ? nullptr : texts[at].data();
        };
        const auto length = [&texts](int at) { return static_cast<uint32_t>(texts[at].size()); };
        const uint32_t type = input.PickValueInArray<uint32_t>({0, 0, 1, 10008, 0xFFFFFFFF});
        const int32_t code = input.ConsumeIntegral<int32_t>();
        const uint64_t tick = input.ConsumeIntegral<uint64_t>();
        switch (input.ConsumeIntegralInRange(0, 4)) {
        case 0:
            return mTable->qrcodeResp(type, code, text(0), length(0), tick, tick);
        case 1:
            return mTable->onKickOut(code);
        case 2:
            return mTable->onUserStateException();
        case 3:
            return mTable->clientTmpTokenResp(type, code, text(0), length(0), text(1), length(1),
                                              text(2), length(2), type, tick);
        default:
            return mTable->loginResp(type, code, text(0), length(0), text(1), length(1), text(2),
                                     length(2), type, tick);
        }
    }

private:
    /// In memory of just its size, as a careless component passes it.
    static std::vector<char> takeText(FuzzedDataProvider& input) {
        const std::string text = input.ConsumeRandomLengthString(64);
        return std::vector<char>(text.begin(), text.end());
    }

    static Bag takeBag(FuzzedDataProvider& input) {
        Bag bag;
        for (const wchar_t* name : {L"ResultCode", L"QRCodeState", L"ErrorCode"}) {
            if (input.ConsumeBool()) {
                bag.numbers[name] = input.ConsumeIntegralInRange(-1, 9);
            }
        }
        for (const wchar_t* name : {L"openid", L"ctk", L"QRCodeImageUrl", L"QRCodeID", L"result",
                                    L"ResultMessage", L"platformkey", L"body"}) {
            if (input.ConsumeBool()) {
                bag.texts[name] = input.ConsumeRandomLengthString(64);
            }
        }
        return bag;
    }

    vesk::test::ScriptedKZ::Script mScript;
    FrCallbackTable* const mTable = VESKFRCallbacks::MakeTable();
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Messengers& messengers = *new Messengers;
    FuzzedDataProvider input(data, size);
    while (input.remaining_bytes() > 0) {
        answers = 0;
        if (input.ConsumeBool()) {
            messengers.sendKZ(input);
        } else {
            messengers.sendFerno(input);
        }
        expect(answers <= 1, "an event has one answer at most");
    }
    return 0;
}
