#ifndef VESK_DEVKIT_SIMULATORS_FERNO_COMPONENT_H
#define VESK_DEVKIT_SIMULATORS_FERNO_COMPONENT_H

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "playerdesk.h"
#include "simulator.h"

namespace vesk::fernosim {

/// The table that frlogin_init takes. Lengths go out as 64 bits: hosts must cope with either width.
struct CallbackTable {
    void* unused0;
    void (*qrcode)(uint32_t type, int32_t code, const char* url, size_t urlLength, uint64_t timeout,
                   uint64_t expiryTick);
    void (*login)(uint32_t type, int32_t code, const char* ctt, size_t cttLength,
                  const char* openid, size_t openidLength, const char* key, size_t keyLength,
                  uint32_t cttTimeout, uint64_t expiryTick);
    void* unused3;
    void (*token)(uint32_t type, int32_t code, const char* ctt, size_t cttLength,
                  const char* openid, size_t openidLength, const char* key, size_t keyLength,
                  uint32_t cttTimeout, uint64_t expiryTick);
    void* unused5;
    void* unused6;
    void (*kickOut)(int32_t code);
    void* unused8;
    void (*stateException)();
};

/// The simulated messenger: one thread calls the host back, step by step, as ferno_sim.ini says.
/// Each call either way is a line in ferno_sim_calls.txt, callbacks once they have returned. Calls
/// may come on any threads at once.
class Component {
public:
    /// Copies @p table, unless ferno_sim.ini says that its address is kept.
    explicit Component(const CallbackTable& table);
    /// Ends the thread, once and before the component goes; from inside a callback it lets the
    /// callback end first.
    void stop();

    /// Queues the steps of the setting @p key, "<delay ms>:<event>[:<argument>...],...".
    void play(const char* key, const char* otherwise);

    /// Lets the player at the scan page decide about a code; he leaves one that came before.
    void playInteractively(const std::string& controlUrl, const std::string& preCode);

    /// The player leaves the scan page.
    void leaveScanPage();

    /// Lets a thread play the setting @p key, if there is one, that the component does not end:
    /// it calls back whatever has become of the host. The library stays loaded for it.
    void leaveBehind(const char* key) const;

private:
    /// What the thread needs; it outlives the component when that goes inside a callback.
    struct State {
        State(const CallbackTable& host, bool keepsPointer)
            : copy(host), table(keepsPointer ? host : copy) {}
        bool keepsPointer() const { return &table != &copy; }

        const CallbackTable copy;
        const CallbackTable& table; ///< the host's own, or the copy
        std::mutex mutex;
        std::condition_variable changed;
        std::deque<std::string> steps;
        bool ended = false;
    };

    static void queue(State& state, const std::string& steps);
    static void run(const std::shared_ptr<State>& state);
    static void send(const CallbackTable& table, const std::string& event);
    static void sendOnThreads(const CallbackTable& table, const std::string& event);

    std::shared_ptr<State> mState;
    std::thread mThread;
    std::mutex mDeskMutex; // the desk's thread never takes it
    std::unique_ptr<simulator::PlayerDesk> mDesk;
};

} // namespace vesk::fernosim

#endif
