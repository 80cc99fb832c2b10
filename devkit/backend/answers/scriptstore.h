#ifndef VESK_DEVKIT_BACKEND_ANSWERS_SCRIPTSTORE_H
#define VESK_DEVKIT_BACKEND_ANSWERS_SCRIPTSTORE_H

#include <cstddef>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "answers/scriptedanswer.h"

namespace vesk::backend {

/// A queue of scripted answers for each path. Safe to use from several threads.
class ScriptStore {
public:
    /// @return how many answers wait for that path now.
    size_t push(const ScriptedAnswer& answer);

    /// Takes the oldest answer for a path.
    std::optional<ScriptedAnswer> take(const std::string& path);

    void clear();

private:
    std::mutex mMutex;
    std::map<std::string, std::deque<ScriptedAnswer>> mQueues;
};

} // namespace vesk::backend

#endif
