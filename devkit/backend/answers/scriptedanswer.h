#ifndef VESK_DEVKIT_BACKEND_ANSWERS_SCRIPTEDANSWER_H
#define VESK_DEVKIT_BACKEND_ANSWERS_SCRIPTEDANSWER_H

#include <cstddef>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace vesk::backend {

/// What happens to the connection of a scripted request.
enum class Action { Answer, Echo, Reset, Cut, Hang, Redirect };

/// One scripted answer.
struct ScriptedAnswer {
    /// The path it is for, as scriptPath() gives it.
    std::string path;
    Action action = Action::Answer;
    std::optional<int> status;
    std::optional<std::string> body;
    int delayMs = 0;
    /// How many requests get this answer.
    int times = 1;
    /// How often the body is sent; more than once in chunks, without an announced length.
    int repeat = 1;
    /// The pause after each byte of the body.
    int dripMs = 0;
    /// The length that the header announces, when it is not the true one.
    std::optional<int> announce;
    /// How much of the body comes before a cut; half of it by default.
    std::optional<int> cutAt;
    /// Where a redirect points.
    std::string location;

    /// Whether the default answer's body is sent: a script that only delays or cuts says nothing of
    /// its own.
    bool usesDefaultBody() const;
};

/// The name that scripts use for a path: "/v2/auth/login" is "auth/login", a path outside "/v2/"
/// keeps its form.
std::string scriptPath(const std::string& path);

/// Reads a scripted answer from JSON text.
/// @return an empty text, or what is wrong with the JSON.
std::string parseScript(const std::string& json, ScriptedAnswer& answer);

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
