#include "answers/scriptstore.h"

namespace vesk::backend {

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
