#ifndef VESK_DEVKIT_BACKEND_CHECKS_CHECKSETTINGS_H
#define VESK_DEVKIT_BACKEND_CHECKS_CHECKSETTINGS_H

#include <string>

namespace vesk::backend {

/// The backend's own identity and its tolerance.
struct CheckSettings {
    std::string gameId;
    std::string key;
    /// Seconds that "ts" may differ from the backend's clock.
    long long maxSkew = 0;
};

/// The operations that the backend serves.
enum class Endpoint { PreCode, Login, Logout };

/// Channel ids that the backend knows.
constexpr const char* kFernoChannelId = "1";
constexpr const char* kKzChannelId = "2";
constexpr const char* kSteamChannelId = "21";

} // namespace vesk::backend

#endif
