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
    /// Starts the thread, which keeps the component. Copies @p host, unless ferno_sim.ini says that
    /// its address is kept.
    static std::shared_ptr<Component> start(const CallbackTable& host);

    Component(const CallbackTable& host, bool keepsPointer)
        : mCopy(host), mTable(keepsPointer ? host : mCopy) {}
    Component(const Component&) = delete;
    Component& operator=(const Component&) = delete;

    /// Ends the thread, once; from inside a callback it lets the callback end first.
    void stop();

    /// Queues steps, "<delay ms>:<event>[:<argument>...],...".
    void play(const std::string& steps);

    /// Lets the player at the scan page decide about a code; he leaves one that came before.
    void playInteractively(const std::string& controlUrl, const std::string& preCode);

    /// The player leaves the scan page.
    void leaveScanPage();

    /// Lets a thread play the setting @p key, if there is one, that the component does not end:
    /// it calls back whatever has become of the host. The library stays loaded for it.
    void leaveBehind(const char* key) const;

private:
    void run();
    void sendOnThreads(const std::string& event) const;
    void send(const std::string& event) const;

    const CallbackTable mCopy;
    const CallbackTable& mTable; ///< the host's own, or the copy
    std::thread mThread;
    std::mutex mMutex;
    std::condition_variable mChanged;
    std::deque<std::string> mSteps;
    bool mEnded = false;
    std::mutex mDeskMutex; // the desk's thread never takes it
    std::unique_ptr<simulator::PlayerDesk> mDesk;
};

} // namespace vesk::fernosim

#endif
