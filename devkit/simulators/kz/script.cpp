#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "common/text.h"
#include "events.h"

namespace vesk::kzsim {

using simulator::Settings;

namespace {

std::atomic<long> theQrCodes{0};

constexpr const char* kDefaults[][2] = {
    {"on_qrcode", "20:info:1:https://kz.example/qr/1,50:result:0:2,50:result:0:3"},
    {"on_local_list", "20:list:user"},
    {"on_local_user", "20:user:0"},
    {"on_refresh", "20:record:0"},
    {"on_late", "100:result:0:3"},
};

constexpr LONG kQrCodeInfo = 2;
constexpr LONG kLocalLoginList = 8;

/// A number that an event brings, and which one a login has.
struct Number {
    const char* property = nullptr;
    LONG ofLogin = 0;
};

/// A kind of event, with its fields in their order.
struct Kind {
    const char* name;
    LONG type;
    Number numbers[2] = {};
    const char* text = nullptr; ///< takes all that is left
    /// The setting that says who logs in with it; an error and its message may follow.
    const char* player = nullptr;
};

constexpr Kind kKinds[] = {
    {"unknown", 0, {}, "result"},
    {"sdkevent", 1},
    {"info", kQrCodeInfo, {{"QRCodeState"}}, "QRCodeImageUrl"},
    {"result", 3, {{"ResultCode", 0}, {"QRCodeState", 3}}, nullptr, "openid"},
    {"platformkey", 6, {}, "platformkey"},
    {"platformkeylogin", 7, {{"ResultCode"}}},
    {"user", 9, {{"ResultCode", 0}}, nullptr, "local_openid"},
    {"record", 10, {{"ResultCode", 0}}, nullptr, "openid"},
    {"userinfo", 11, {}, "body"},
};

/// Reads one step, "<delay>:<event>", see README.md.
class StepReader {
public:
    StepReader(std::string text, const Settings& settings)
        : mRest(std::move(text)), mSettings(settings) {}

    /// @return false when it is none; the delay may have been read all the same.
    bool read(Step& step) {
        const LONG delay = number();
        if (!mGood || delay < 0) {
            return false;
        }
        step.delay = static_cast<ULONGLONG>(delay);
        readEvent(next(), step.event);
        return mGood && mRest.empty();
    }

private:
    void readEvent(const std::string& name, Event& event) {
        const auto* kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                        [&](const Kind& known) { return name == known.name; });
        if (name != "null") {
            event.bag = PropertyBag::make();
        }
        if (kind != std::end(kKinds)) {
            event.type = kind->type;
            readFields(*kind, *event.bag.Get());
        } else if (name == "list") {
            event.type = kLocalLoginList;
            readList(*event.bag.Get());
        } else if (name == "type" || name == "null") {
            event.type = number();
        } else {
            mGood = false;
        }
    }

    void readFields(const Kind& kind, PropertyBag& bag) {
        bool logsIn = kind.player != nullptr;
        for (const Number& field : kind.numbers) {
            if (field.property != nullptr) {
                const LONG value = number();
                bag.set(field.property, value);
                logsIn = logsIn && value == field.ofLogin;
            }
        }
        if (kind.text != nullptr) {
            bag.set(kind.text, rest());
        }
        if (kind.type == kQrCodeInfo) {
            bag.set("QRCodeID", "qr-" + std::to_string(++theQrCodes));
            bag.set("ResultMessage", std::string("simulated"));
        }
        if (logsIn) {
            bag.set("openid", openid(kind.player));
            bag.set("ctk", mSettings.text("ctk", "kz-ctk-1"));
        }
        if (kind.player != nullptr && !mRest.empty()) {
            bag.set("ErrorCode", number());
            if (!mRest.empty()) {
                bag.set("ResultMessage", rest());
            }
        }
    }

    void readList(PropertyBag& bag) {
        const std::string what = next();
        bag.set("ResultCode", what == "code" ? number() : LONG{0});
        if (what == "empty") {
            bag.set("LocalLoginList", PropertyBag::List());
        } else if (what == "unreadable") {
            bag.set("LocalLoginList", PropertyBag::List(1));
        } else if (what == "user") {
            const PropertyBag::Pointer user = PropertyBag::make();
            user->set("openid", openid("local_openid"));
            bag.set("LocalLoginList", PropertyBag::List{user});
        } else if (what != "absent" && what != "code") {
            mGood = false;
        }
    }

    std::string openid(const char* key) const { return mSettings.text(key, "kz-openid-1"); }

    std::string next() {
        const size_t colon = std::min(mRest.find(':'), mRest.size());
        const std::string field = mRest.substr(0, colon);
        mRest.erase(0, colon + 1);
        return field;
    }

    std::string rest() { return std::exchange(mRest, std::string()); }

    LONG number() {
        const std::string field = next();
        char* end = nullptr;
        const LONG value = std::strtol(field.c_str(), &end, 10);
        mGood = mGood && !field.empty() && *end == '\0';
        return value;
    }

    std::string mRest;
    const Settings& mSettings;
    bool mGood = true;
};

} // namespace

Script readScript(const Settings& settings, const char* key) {
    const auto* usual = std::find_if(std::begin(kDefaults), std::end(kDefaults),
                                     [&](const auto& row) { return std::string(row[0]) == key; });
    const char* steps = usual == std::end(kDefaults) ? "" : (*usual)[1];
    Script script = readSteps(settings, key, settings.text(key, steps));
    if (!script.empty()) {
        script.front().delay += static_cast<ULONGLONG>(settings.number("late_ms", 0));
    }
    return script;
}

Script readSteps(const Settings& settings, const char* key, const std::string& steps) {
    Script script;
    ULONGLONG lost = 0;
    for (const std::string& part : devkit::split(steps, ',')) {
        const std::string text(devkit::trimmed(part));
        Step step;
        const bool good = StepReader(text, settings).read(step);
        step.delay += lost;
        if (good) {
            script.push_back(step);
            lost = 0;
        } else {
            writeProblem(std::string(key) + ": cannot read the step \"" + text + '"');
            lost = step.delay;
        }
    }
    return script;
}

} // namespace vesk::kzsim
