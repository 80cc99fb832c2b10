#include "script.h"

#include <algorithm>
#include <cstring>

#include "call_log.h"
#include "step_parser.h"

namespace vesk::kzsim {
namespace {

struct Default {
    const char* key;
    const char* steps;
};

constexpr Default kDefaults[] = {
    {"on_qrcode", "20:info:1:https://kz.example/qr/1,50:result:0:2,50:result:0:3"},
    {"on_local_list", "20:list:user"},
    {"on_local_user", "20:user:0"},
    {"on_refresh", "20:record:0"},
    {"on_late", "100:result:0:3"},
};

const char* defaultOf(const char* key) {
    for (const Default& entry : kDefaults) {
        if (std::strcmp(entry.key, key) == 0) {
            return entry.steps;
        }
    }
    return "";
}

} // namespace

Script readScript(const Settings& settings, const char* key) {
    Script script = readSteps(settings, key, settings.text(key, defaultOf(key)));
    if (!script.empty()) {
        script.front().delay += static_cast<ULONGLONG>(settings.number("late_ms", 0));
    }
    return script;
}

Script readSteps(const Settings& settings, const char* key, const std::string& steps) {
    Script script;
    ULONGLONG lost = 0;
    for (size_t at = 0; at < steps.size();) {
        const size_t end = std::min(steps.find(',', at), steps.size());
        const size_t begin = steps.find_first_not_of(' ', at);
        const std::string text = begin < end ? steps.substr(begin, end - begin) : std::string();
        at = end + 1;
        Step step;
        const bool good = StepParser(text, settings).parse(step);
        step.delay += lost;
        if (good) {
            script.push_back(step);
            lost = 0;
        } else {
            logProblem(std::string(key) + ": cannot read the step \"" + text + '"');
            lost = step.delay;
        }
    }
    return script;
}

} // namespace vesk::kzsim
