#include "scriptedanswer.h"

#include "jsonmembers.h"
#include "jsontext.h"

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>

namespace vesk::backend {

namespace {

constexpr int kMaxDelayMs = 600000;
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
        {"answer", Action::Answer}, {"reset", Action::Reset},       {"cut", Action::Cut},
        {"hang", Action::Hang},     {"redirect", Action::Redirect},
    };
    for (const auto& [actionName, value] : kActions) {
        if (name == actionName) {
            action = value;
            return true;
        }
    }
    return false;
}

std::string readNumberMember(const std::string& name, const rapidjson::Value& value,
                             ScriptedAnswer& answer) {
    if (name == "delay_ms") {
        return readInt(value, 0, kMaxDelayMs, answer.delayMs)
                   ? ""
                   : "delay_ms is not a number from 0 to " + std::to_string(kMaxDelayMs);
    }
    int status = 0;
    if (!readInt(value, kMinStatus, kMaxStatus, status)) {
        return "status is not a number from 200 to 599";
    }
    answer.status = status;
    return {};
}

std::string readMember(const std::string& name, const rapidjson::Value& value,
                       ScriptedAnswer& answer) {
    if (name == "status" || name == "delay_ms") {
        return readNumberMember(name, value, answer);
    }
    if (name != "path" && name != "body" && name != "action" && name != "location") {
        return "unknown member " + quoted(name);
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
        return "action is " + quoted(text) +
               " where 'answer', 'reset', 'cut', 'hang' or 'redirect' was expected";
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
    return {};
}

} // namespace vesk::backend
