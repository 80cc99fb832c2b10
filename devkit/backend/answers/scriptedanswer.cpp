#include "answers/scriptedanswer.h"

#include "server/controlport.h"
#include "server/system.h"

namespace vesk::backend {

namespace {

constexpr int kMostDelayMs = 600000;
constexpr int kMaxCount = 1000000;
constexpr int kMaxBytes = 1000000000;
constexpr int kMinStatus = 200;
constexpr int kMaxStatus = 599;
const std::string kPathPrefix = "/v2/";

void refuseIf(bool isWrong, const char* why) {
    if (isWrong) {
        throw Refusal(400, why);
    }
}

} // namespace

std::string scriptPath(const std::string& path) {
    return path.compare(0, kPathPrefix.size(), kPathPrefix) == 0 ? path.substr(kPathPrefix.size())
                                                                 : path;
}

ScriptedAnswer readScript(const std::string& json) {
    const PostedJson script(json);
    script.allowOnly({"path", "body", "status", "delay_ms", "action", "times", "repeat", "announce",
                      "drip_ms", "cut_at", "location"});
    ScriptedAnswer answer;
    answer.path = scriptPath(script.text("path"));
    answer.action = static_cast<Action>(
        script.choice("action", {"answer", "echo", "reset", "cut", "hang", "redirect"}, true));
    answer.status = script.number("status", kMinStatus, kMaxStatus, answer.status);
    if (script.has("body")) {
        answer.body = script.text("body");
    }
    answer.delayMs = script.number("delay_ms", 0, kMostDelayMs, answer.delayMs);
    answer.times = script.number("times", 1, kMaxCount, answer.times);
    answer.repeat = script.number("repeat", 1, kMaxCount, answer.repeat);
    answer.dripMs = script.number("drip_ms", 0, kMostDelayMs, answer.dripMs);
    answer.announce = script.number("announce", 1, kMaxBytes, answer.announce);
    answer.cutAt = script.number("cut_at", 0, kMaxBytes, answer.cutAt);
    answer.location = script.text("location");

    refuseIf(answer.path.empty(), "path is missing");
    // A line end in the header would not be a redirect but a broken answer.
    refuseIf(answer.location.find_first_of(std::string_view("\r\n\0", 3)) != std::string::npos,
             "location must be one line");
    refuseIf((answer.action == Action::Redirect) == answer.location.empty(),
             "location and the action 'redirect' go together");
    refuseIf(answer.cutAt >= 0 && answer.action != Action::Cut,
             "cut_at goes with the action 'cut'");
    refuseIf(answer.action == Action::Reset && !canReset(),
             "'reset' is not possible on Windows; 'hang' and 'cut' are");
    return answer;
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
