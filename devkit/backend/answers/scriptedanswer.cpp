#include "answers/scriptedanswer.h"

#include <functional>
#include <rapidjson/document.h>
#include <rapidjson/error/en.h>

#include "server/json.h"

namespace vesk::backend {

namespace {

constexpr int kMaxDelayMs = 600000;
constexpr int kMaxCount = 1000000;
constexpr int kMaxBytes = 1000000000;
constexpr int kMinStatus = 200;
constexpr int kMaxStatus = 599;
const std::string kPathPrefix = "/v2/";

bool readInt(const rapidjson::Value& value, int min, int max, int& number) {
    if (!value.IsInt() || value.GetInt() < min || value.GetInt() > max) {
        return false;
    }
    number = value.GetInt();
    return true;
}

bool readAction(const std::string& name, Action& action) {
    static const std::pair<const char*, Action> kActions[] = {
        {"answer", Action::Answer}, {"echo", Action::Echo}, {"reset", Action::Reset},
        {"cut", Action::Cut},       {"hang", Action::Hang}, {"redirect", Action::Redirect},
    };
    for (const auto& [actionName, value] : kActions) {
        if (name == actionName) {
            action = value;
            return true;
        }
    }
    return false;
}

/// A member that is a number, and where that goes.
struct NumberMember {
    const char* name;
    int min, max;
    std::function<int&(ScriptedAnswer&)> place;
};

const NumberMember* findNumberMember(const std::string& name) {
    static const NumberMember kMembers[] = {
        {"status", kMinStatus, kMaxStatus, [](auto& a) -> int& { return a.status.emplace(); }},
        {"delay_ms", 0, kMaxDelayMs, [](auto& a) -> int& { return a.delayMs; }},
        {"drip_ms", 0, kMaxDelayMs, [](auto& a) -> int& { return a.dripMs; }},
        {"times", 1, kMaxCount, [](auto& a) -> int& { return a.times; }},
        {"repeat", 1, kMaxCount, [](auto& a) -> int& { return a.repeat; }},
        {"announce", 1, kMaxBytes, [](auto& a) -> int& { return a.announce.emplace(); }},
        {"cut_at", 0, kMaxBytes, [](auto& a) -> int& { return a.cutAt.emplace(); }},
    };
    for (const NumberMember& member : kMembers) {
        if (name == member.name) {
            return &member;
        }
    }
    return nullptr;
}

std::string readNumberMember(const NumberMember& member, const rapidjson::Value& value,
                             ScriptedAnswer& answer) {
    int number = 0;
    if (!readInt(value, member.min, member.max, number)) {
        return std::string(member.name) + " is not a number from " + std::to_string(member.min) +
               " to " + std::to_string(member.max);
    }
    member.place(answer) = number;
    return {};
}

std::string readMember(const std::string& name, const rapidjson::Value& value,
                       ScriptedAnswer& answer) {
    if (const NumberMember* const member = findNumberMember(name)) {
        return readNumberMember(*member, value, answer);
    }
    if (name != "path" && name != "body" && name != "action" && name != "location") {
        return "unknown member " + inQuotes(name);
    }
    if (!value.IsString()) {
        return name + " is " + kindOf(value) + " where a string was expected";
    }
    const std::string text = textOf(value);
    if (name == "path") {
        answer.path = scriptPath(text);
    } else if (name == "body") {
        answer.body = text;
    } else if (name == "location") {
        answer.location = text;
    } else if (!readAction(text, answer.action)) {
        return "action is " + inQuotes(text) +
               " where 'answer', 'echo', 'reset', 'cut', 'hang' or 'redirect' was expected";
    }
    return {};
}

} // namespace

bool ScriptedAnswer::usesDefaultBody() const {
    const bool sendsDefault = action == Action::Cut || (action == Action::Answer && !status);
    return sendsDefault && !body;
}

std::string scriptPath(const std::string& path) {
    return path.compare(0, kPathPrefix.size(), kPathPrefix) == 0 ? path.substr(kPathPrefix.size())
                                                                 : path;
}

std::string parseScript(const std::string& json, ScriptedAnswer& answer) {
    rapidjson::Document document;
    document.Parse<rapidjson::kParseIterativeFlag>(json.data(), json.size());
    if (document.HasParseError()) {
        return std::string("not JSON: ") + rapidjson::GetParseError_En(document.GetParseError());
    }
    if (!document.IsObject()) {
        return "an object was expected";
    }
    for (const auto& member : document.GetObject()) {
        std::string problem = readMember(textOf(member.name), member.value, answer);
        if (!problem.empty()) {
            return problem;
        }
    }
    if (answer.path.empty()) {
        return "path is missing";
    }
    // A line end in the header would not be a redirect but a broken answer.
    if (answer.location.find_first_of(std::string_view("\r\n\0", 3)) != std::string::npos) {
        return "location must be one line";
    }
    if ((answer.action == Action::Redirect) == answer.location.empty()) {
        return "location and the action 'redirect' go together";
    }
    if (answer.cutAt && answer.action != Action::Cut) {
        return "cut_at goes with the action 'cut'";
    }
    return {};
}

size_t ScriptStore::push(const ScriptedAnswer& answer) {
    const std::lock_guard<std::mutex> lock(mMutex);
    auto& queue = mQueues[answer.path];
    queue.push_back(answer);
    return queue.size();
}

std::optional<ScriptedAnswer> ScriptStore::take(const std::string& path) {
    const std::lock_guard<std::mutex> lock(mMutex);
    const auto queue = mQueues.find(path);
    if (queue == mQueues.end() || queue->second.empty()) {
        return std::nullopt;
    }
    ScriptedAnswer answer = queue->second.front();
    if (--queue->second.front().times == 0) {
        queue->second.pop_front();
    }
    return answer;
}

void ScriptStore::clear() {
    const std::lock_guard<std::mutex> lock(mMutex);
    mQueues.clear();
}

} // namespace vesk::backend
