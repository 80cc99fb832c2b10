#ifndef VESK_SIMULATORS_KZ_PLAYER_DESK_H
#define VESK_SIMULATORS_KZ_PLAYER_DESK_H

#include <windows.h>
#include <memory>
#include <string>

#include "client/playersession.h"
#include "event_thread.h"

namespace vesk::kzsim {

/// A player at the dev backend's scan console. A thread of its own shows him a QR code and turns
/// what he does into the component's events; it calls no listener itself, so that it can be waited
/// for from anywhere.
class PlayerDesk {
public:
    /// Null when the system has no thread to give. Stop it before the event thread.
    static std::unique_ptr<PlayerDesk> start(const std::string& controlUrl,
                                             const std::string& preCode,
                                             std::shared_ptr<EventThread> events);

    /// Ends the session and the thread, within about a quarter of a second.
    ~PlayerDesk();
    PlayerDesk(const PlayerDesk&) = delete;
    PlayerDesk& operator=(const PlayerDesk&) = delete;

private:
    PlayerDesk(const std::string& controlUrl, const std::string& preCode,
               std::shared_ptr<EventThread> events)
        : mSession(controlUrl), mPreCode(preCode), mEvents(std::move(events)) {}

    static DWORD WINAPI run(void* desk);
    void serve();

    scanclient::PlayerSession mSession;
    const std::string mPreCode;
    const std::shared_ptr<EventThread> mEvents;
    HANDLE mHandle = nullptr;
};

} // namespace vesk::kzsim

#endif
