#include "script.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <utility>

#include "common/text.h"
#include "server.h"

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

/// Reads one step, "<delay>:<event>", see kz_sim.ini.
class StepParser {
public:
    StepParser(std::string text, const Settings& settings)
        : mRest(std::move(text)), mSettings(settings) {}

    /// @return false when it is none; the delay may have been read all the same.
    bool parse(Step& step);

private:
    struct Kind {
        const char* name;
        LONG type;
        void (StepParser::*read)(const char* what);
        const char* what;
    };
    static const Kind kKinds[];

    // Each reads the fields of a kind of event into the bag.
    void nothing(const char* /*unused*/) {}
    void text(const char* property) { mBag->set(property, rest()); }
    void code(const char* /*unused*/) { mBag->set("ResultCode", number()); }
    void qrCode(const char* /*unused*/);
    void scan(const char* openidKey);
    void login(const char* openidKey);
    void localList(const char* openidKey);

    void addLogin(const char* openidKey);
    void addError();
    std::string openid(const char* key) const { return mSettings.text(key, "kz-openid-1"); }

    std::string next();
    std::string rest() { return std::exchange(mRest, std::string()); }
    LONG number();

    std::string mRest;
    const Settings& mSettings;
    bool mGood = true;
    PropertyBag::Pointer mBag = PropertyBag::make();
};

const StepParser::Kind StepParser::kKinds[] = {
    {"unknown", 0, &StepParser::text, "result"},
    {"sdkevent", 1, &StepParser::nothing, nullptr},
    {"info", 2, &StepParser::qrCode, nullptr},
    {"result", 3, &StepParser::scan, "openid"},
    {"platformkey", 6, &StepParser::text, "platformkey"},
    {"platformkeylogin", 7, &StepParser::code, nullptr},
    {"list", 8, &StepParser::localList, "local_openid"},
    {"user", 9, &StepParser::login, "local_openid"},
    {"record", 10, &StepParser::login, "openid"},
    {"userinfo", 11, &StepParser::text, "body"},
};

bool StepParser::parse(Step& step) {
    const LONG delay = number();
    if (!mGood || delay < 0) {
        return false;
    }
    step.delay = static_cast<ULONGLONG>(delay);
    const std::string name = next();
    if (name == "type" || name == "null") {
        step.event.type = number();
    } else {
        const auto* kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                        [&](const Kind& known) { return name == known.name; });
        if (kind == std::end(kKinds)) {
            return false;
        }
        step.event.type = kind->type;
        (this->*kind->read)(kind->what);
    }
    if (name != "null") {
        step.event.bag = mBag;
    }
    return mGood && mRest.empty();
}

void StepParser::qrCode(const char* /*unused*/) {
    const LONG state = number();
    mBag->set("QRCodeImageUrl", rest());
    mBag->set("QRCodeID", "qr-" + std::to_string(++theQrCodes));
    mBag->set("QRCodeState", state);
    mBag->set("ResultMessage", std::string("simulated"));
}

void StepParser::scan(const char* openidKey) {
    const LONG code = number();
    const LONG state = number();
    mBag->set("ResultCode", code);
    mBag->set("QRCodeState", state);
    if (code == 0 && state == 3) {
        addLogin(openidKey);
    }
    addError();
}

void StepParser::login(const char* openidKey) {
    const LONG code = number();
    mBag->set("ResultCode", code);
    if (code == 0) {
        addLogin(openidKey);
    }
    addError();
}

void StepParser::localList(const char* openidKey) {
    const std::string what = next();
    mBag->set("ResultCode", what == "code" ? number() : LONG{0});
    if (what == "empty") {
        mBag->set("LocalLoginList", PropertyBag::List());
    } else if (what == "unreadable") {
        mBag->set("LocalLoginList", PropertyBag::List(1));
    } else if (what == "user") {
        const PropertyBag::Pointer user = PropertyBag::make();
        user->set("openid", openid(openidKey));
        mBag->set("LocalLoginList", PropertyBag::List{user});
    } else if (what != "absent" && what != "code") {
        mGood = false;
    }
}

void StepParser::addLogin(const char* openidKey) {
    mBag->set("openid", openid(openidKey));
    mBag->set("ctk", mSettings.text("ctk", "kz-ctk-1"));
}

void StepParser::addError() {
    if (!mRest.empty()) {
        mBag->set("ErrorCode", number());
    }
    if (!mRest.empty()) {
        mBag->set("ResultMessage", rest());
    }
}

std::string StepParser::next() {
    const size_t colon = std::min(mRest.find(':'), mRest.size());
    const std::string field = mRest.substr(0, colon);
    mRest.erase(0, colon + 1);
    return field;
}

LONG StepParser::number() {
    const std::string field = next();
    char* end = nullptr;
    const LONG value = std::strtol(field.c_str(), &end, 10);
    mGood = mGood && !field.empty() && *end == '\0';
    return value;
}

} // namespace

Script readScript(const Settings& settings, const char* key) {
    const auto* steps =
        std::find_if(std::begin(kDefaults), std::end(kDefaults),
                     [&](const auto& row) { return std::strcmp(row[0], key) == 0; });
    Script script = readSteps(settings, key,
                              settings.text(key, steps == std::end(kDefaults) ? "" : (*steps)[1]));
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
        const bool good = StepParser(text, settings).parse(step);
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
