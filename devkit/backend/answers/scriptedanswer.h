#ifndef VESK_DEVKIT_BACKEND_ANSWERS_SCRIPTEDANSWER_H
#define VESK_DEVKIT_BACKEND_ANSWERS_SCRIPTEDANSWER_H

#include <cstddef>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "httplib.h"
#include "server/waitingroom.h"

namespace vesk::backend {

/// What happens to the connection of a scripted request; the order is that of the names.
enum class Action { Answer, Echo, Reset, Cut, Hang, Redirect };

/// One scripted answer. Without a script the backend does what an empty one says.
struct ScriptedAnswer {
    /// The path it is for, as scriptPath() gives it.
    std::string path;
    Action action = Action::Answer;
    /// The status; 0: as the backend would have answered.
    int status = 0;
    std::optional<std::string> body;
    int delayMs = 0;
    /// How many requests get this answer.
    int times = 1;
    /// How often the body is sent; more than once in chunks, without an announced length.
    int repeat = 1;
    /// The pause after each byte of the body.
    int dripMs = 0;
    /// The length that the header announces; 0: the true one.
    int announce = 0;
    /// How much of the body comes before a cut; negative: half of it.
    int cutAt = -1;
    /// Where a redirect points.
    std::string location;

    /// Whether the default answer's body is sent: a script that only delays or cuts says nothing of
    /// its own.
    bool usesDefaultBody() const {
        return !body && (action == Action::Cut || (action == Action::Answer && status == 0));
    }
};

/// The name that scripts use for a path: "/v2/auth/login" is "auth/login", a path outside "/v2/"
/// keeps its form.
std::string scriptPath(const std::string& path);

/// Reads a scripted answer from JSON text. Throws a Refusal.
ScriptedAnswer readScript(const std::string& json);

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

struct Answer {
    /// 0 when none is sent.
    int status = 200;
    std::string body;
};

/// Answers as the script says: late or never, the body whole or cut, once or many times, byte by
/// byte, with or without the truth about its length.
/// @param waitingRoom outlives the response
void deliver(const ScriptedAnswer& script, const Answer& answer, WaitingRoom& waitingRoom,
             const httplib::Request& request, httplib::Response& response);

} // namespace vesk::backend

#endif
