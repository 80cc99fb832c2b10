#include "step_parser.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "text.h"

namespace vesk::kzsim {
namespace {

std::atomic<long> theQrCodes{0};

constexpr const char* kDefaultOpenid = "kz-openid-1";
constexpr const char* kDefaultToken = "kz-ctk-1";

} // namespace

bool StepParser::parse(Step& step) {
    const LONG delay = number();
    if (!mGood || delay < 0) {
        return false;
    }
    step.delay = static_cast<ULONGLONG>(delay);
    const std::string kind = next();
    const struct {
        const char* kind;
        LONG type;
        void (StepParser::*read)();
    } kinds[] = {
        {"unknown", 0, &StepParser::unknown},
        {"sdkevent", 1, &StepParser::nothing},
        {"info", 2, &StepParser::qrCode},
        {"result", 3, &StepParser::qrCodeLogin},
        {"platformkey", 6, &StepParser::platformKey},
        {"platformkeylogin", 7, &StepParser::resultCode},
        {"list", 8, &StepParser::localList},
        {"user", 9, &StepParser::localUser},
        {"record", 10, &StepParser::loginRecord},
        {"userinfo", 11, &StepParser::userInfo},
    };
    if (kind == "type" || kind == "null") {
        step.event.type = number();
    } else {
        const auto* entry = std::find_if(std::begin(kinds), std::end(kinds),
                                         [&](const auto& known) { return kind == known.kind; });
        if (entry == std::end(kinds)) {
            return false;
        }
        step.event.type = entry->type;
        (this->*entry->read)();
    }
    if (kind != "null") {
        step.event.bag = mBag;
    }
    return mGood && mRest.empty();
}

void StepParser::unknown() {
    mBag->set(L"result", toWide(rest()));
}

void StepParser::qrCode() {
    const LONG state = number();
    mBag->set(L"QRCodeImageUrl", toWide(rest()));
    mBag->set(L"QRCodeID", L"qr-" + std::to_wstring(++theQrCodes));
    mBag->set(L"QRCodeState", state);
    mBag->set(L"ResultMessage", std::wstring(L"simulated"));
}

void StepParser::qrCodeLogin() {
    const LONG code = number();
    const LONG state = number();
    mBag->set(L"ResultCode", code);
    mBag->set(L"QRCodeState", state);
    if (code == 0 && state == 3) {
        addLogin("openid");
    }
    addError();
}

void StepParser::platformKey() {
    mBag->set(L"platformkey", toWide(rest()));
}

void StepParser::resultCode() {
    mBag->set(L"ResultCode", number());
}

void StepParser::localList() {
    const std::string what = next();
    mBag->set(L"ResultCode", what == "code" ? number() : 0);
    if (what == "empty") {
        mBag->set(L"LocalLoginList", PropertyBag::List());
    } else if (what == "unreadable") {
        mBag->set(L"LocalLoginList", PropertyBag::List(1));
    } else if (what == "user") {
        const PropertyBag::Pointer user = PropertyBag::make();
        user->set(L"openid", toWide(mSettings.text("local_openid", kDefaultOpenid)));
        mBag->set(L"LocalLoginList", PropertyBag::List{user});
    } else if (what != "absent" && what != "code") {
        mGood = false;
    }
}

void StepParser::localUser() {
    const LONG code = number();
    mBag->set(L"ResultCode", code);
    if (code == 0) {
        addLogin("local_openid");
    }
    addError();
}

void StepParser::loginRecord() {
    const LONG code = number();
    mBag->set(L"ResultCode", code);
    if (code == 0) {
        addLogin("openid");
    }
    addError();
}

void StepParser::userInfo() {
    mBag->set(L"body", toWide(rest()));
}

void StepParser::addLogin(const char* openidKey) {
    mBag->set(L"openid", toWide(mSettings.text(openidKey, kDefaultOpenid)));
    mBag->set(L"ctk", toWide(mSettings.text("ctk", kDefaultToken)));
}

void StepParser::addError() {
    if (!mRest.empty()) {
        mBag->set(L"ErrorCode", number());
    }
    if (!mRest.empty()) {
        mBag->set(L"ResultMessage", toWide(rest()));
    }
}

std::string StepParser::next() {
    const size_t colon = std::min(mRest.find(':'), mRest.size());
    const std::string field = mRest.substr(0, colon);
    mRest.erase(0, colon + 1);
    return field;
}

std::string StepParser::rest() {
    return std::exchange(mRest, std::string());
}

LONG StepParser::number() {
    const std::string field = next();
    char* end = nullptr;
    const LONG value = std::strtol(field.c_str(), &end, 10);
    mGood = mGood && !field.empty() && *end == '\0';
    return value;
}

} // namespace vesk::kzsim
