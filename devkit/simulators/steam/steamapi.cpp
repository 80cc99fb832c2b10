#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "simulator.h"

const char* const vesk::simulator::kName = "steam";

namespace {

/// The object whose address stands for Steam's user interface.
struct SteamUser {
    std::atomic<uint32_t> issuedTicket{0}; ///< handle of the ticket that is valid now; 0 = none
};

SteamUser theUser;

/// A call of an entry point: writes its name down and takes the time of the setting @p duration, or
/// the time that calls take.
class Call {
public:
    explicit Call(const char* name, const char* duration = "call_ms") : mName(name) {
        vesk::simulator::writeDown(mName);
        mSettings.stay(mSettings.text(duration, "").empty() ? "call_ms" : duration);
    }

    bool flag(const char* key, bool otherwise) const {
        return mSettings.text(key, otherwise ? "1" : "0") == "1";
    }

    uint64_t number(const char* key, int64_t otherwise) const {
        return static_cast<uint64_t>(mSettings.number(key, otherwise));
    }

    std::vector<uint8_t> bytes(const char* key, const char* otherwise) const {
        const std::string hex = mSettings.text(key, otherwise);
        std::vector<uint8_t> bytes;
        for (size_t i = 0; i + 1 < hex.size(); i += 2) {
            bytes.push_back(
                static_cast<uint8_t>(std::strtoul(hex.substr(i, 2).c_str(), nullptr, 16)));
        }
        return bytes;
    }

    /// Whether an argument is the user interface; a real client would not accept another.
    bool isFor(const void* user) const {
        return expect(user == &theUser, "not the user interface");
    }

    bool expect(bool right, const char* complaint) const {
        if (!right) {
            vesk::simulator::writeDown(mName + ": " + complaint);
        }
        return right;
    }

private:
    const std::string mName;
    const vesk::simulator::Settings mSettings;
};

} // namespace

extern "C" {

bool SteamAPI_Init() {
    return Call("SteamAPI_Init").flag("init", true);
}

bool SteamAPI_IsSteamRunning() {
    return Call("SteamAPI_IsSteamRunning").flag("running", true);
}

bool SteamAPI_RestartAppIfNecessary(uint32_t /*appId*/) {
    return Call("SteamAPI_RestartAppIfNecessary").flag("restart", false);
}

void SteamAPI_Shutdown() {
    const Call call("SteamAPI_Shutdown");
}

void* SteamAPI_SteamUser_v020() {
    return Call("SteamAPI_SteamUser_v020").flag("user_null", false) ? nullptr : &theUser;
}

uint64_t SteamAPI_ISteamUser_GetSteamID(void* user) {
    const Call call("SteamAPI_ISteamUser_GetSteamID");
    return call.isFor(user) ? call.number("steamid", 76561198000000001) : 0;
}

uint32_t SteamAPI_ISteamUser_GetAuthSessionTicket(void* user, void* buffer, int bufferSize,
                                                  uint32_t* size) {
    const Call call("SteamAPI_ISteamUser_GetAuthSessionTicket", "ticket_ms");
    const auto ticket = call.bytes("ticket", "0AFF");
    if (!call.isFor(user) || ticket.size() > static_cast<size_t>(bufferSize)) {
        return 0;
    }
    std::copy(ticket.begin(), ticket.end(), static_cast<uint8_t*>(buffer));
    *size = static_cast<uint32_t>(ticket.size());
    const auto handle = static_cast<uint32_t>(call.number("ticket_handle", 1));
    theUser.issuedTicket = handle;
    return handle;
}

void SteamAPI_ISteamUser_CancelAuthTicket(void* user, uint32_t ticket) {
    const Call call("SteamAPI_ISteamUser_CancelAuthTicket");
    if (call.isFor(user)) {
        call.expect(ticket == theUser.issuedTicket, "not the ticket that was issued");
    }
}

} // extern "C"
