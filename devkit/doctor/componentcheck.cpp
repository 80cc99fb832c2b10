#include <algorithm>

#include "common/system.h"
#include "doctor.h"
#include "module.h"

namespace fs = std::filesystem;

namespace vesk::doctor {

namespace {

struct Channel {
    std::string name;
    std::string component;
    std::string origin;
    std::vector<std::string> keys;
    bool keysNeeded;
};

const std::vector<Channel>& channels() {
    static const std::vector<Channel> all = {
        {"KZ", "KZOpenSDK.dll", "the messenger's maker", {"KZ_APP_ID", "KZ_APP_KEY"}, true},
        {"Ferno", "frlogin.dll", "the messenger's maker", {"FERNO_APP_ID"}, true},
        {"Steam", "steam_api64.dll", "the Steam SDK", {"STEAM_APP_ID"}, false},
    };
    return all;
}

constexpr const char* kNoLogin = "no login works";

struct EntryPoint {
    const char* channel;
    const char* name;
    const char* without = kNoLogin;
};

constexpr EntryPoint kEntryPoints[] = {
    {"KZ", "DllGetClassObject"},
    {"Ferno", "frlogin_init"},
    {"Ferno", "frlogin_req_qrcode"},
    {"Ferno", "frlogin_req_client_tmp_token", "no token can be refreshed"},
    {"Ferno", "frlogin_req_logout", "a logout does not reach the messenger"},
    {"Ferno", "frlogin_uninit", "the component is never shut down"},
    {"Steam", "SteamAPI_Init"},
    {"Steam", "SteamAPI_SteamUser_v020"},
    {"Steam", "SteamAPI_ISteamUser_GetSteamID"},
    {"Steam", "SteamAPI_ISteamUser_GetAuthSessionTicket"},
    {"Steam", "SteamAPI_RestartAppIfNecessary", "a game that was not started by Steam goes on"},
    {"Steam", "SteamAPI_ISteamUser_CancelAuthTicket", "a ticket stays valid after a logout"},
    {"Steam", "SteamAPI_IsSteamRunning", "the log does not say whether Steam is running"},
    {"Steam", "SteamAPI_Shutdown", "Steam is never shut down"},
};

/// Whether a key names something. 0 is none, and 480 is everybody's: Valve's sample game.
bool isGiven(const std::string& value) {
    return value.find_first_not_of('0') != std::string::npos && value != "480";
}

/// Whether the component is the dev kit's, each of which writes down its calls in such a file.
bool isSimulator(const std::string& bytes) {
    return bytes.find("_sim_calls.txt") != std::string::npos;
}

std::vector<std::string> entryPointsOf(const Channel& channel) {
    std::vector<std::string> names;
    for (const EntryPoint& entry : kEntryPoints) {
        if (entry.channel == channel.name) {
            names.emplace_back(entry.name);
        }
    }
    return names;
}

Findings describeMissing(const Channel& channel, const std::vector<std::string>& missing) {
    Findings findings;
    for (const EntryPoint& entry : kEntryPoints) {
        if (std::find(missing.begin(), missing.end(), entry.name) != missing.end()) {
            const auto judge = entry.without == kNoLogin ? problem : warning;
            findings.push_back(
                judge(channel.name,
                      channel.component + " does not export " + entry.name + ": " + entry.without,
                      "Put the version there that the SDK was made for; it comes from " +
                          channel.origin + "."));
        }
    }
    return findings;
}

Findings checkKeys(const Channel& channel, const devkit::IniFile& config) {
    Findings findings;
    for (const std::string& key : channel.keys) {
        if (channel.keysNeeded && config.value(key).empty()) {
            findings.push_back(
                problem(channel.name, channel.component + " is there, but " + key + " is not set",
                        "Add " + key + " to VESKConfig.ini; " + channel.origin +
                            " has given you the value. Or remove " + channel.component + "."));
        }
    }
    return findings;
}

Finding checkMissing(const Channel& channel, const devkit::IniFile* config) {
    for (const std::string& key : channel.keys) {
        if (config != nullptr && isGiven(config->value(key))) {
            return problem(channel.name, key + " is set, but there is no " + channel.component,
                           "Put " + channel.component + " beside the library; it comes from " +
                               channel.origin +
                               ". Or leave the setting empty: the game does not use " +
                               channel.name + ".");
        }
    }
    return ok(channel.name, "not used: " + channel.component + " is not there");
}

Findings checkChannel(const Channel& channel, const fs::path& folder,
                      const devkit::IniFile* config) {
    if (channel.name == "KZ" && kSystem == ModuleKind::Linux64) {
        return {ok(channel.name, "not on Linux: its component is made for Windows only")};
    }
    const fs::path file = folder / channel.component;
    if (!isThere(file)) {
        return {checkMissing(channel, config)};
    }
    const std::string bytes = devkit::readFile(file);
    const ModuleKind kind = kindOf(bytes);
    const auto missing =
        kind == kSystem ? missingExports(file, entryPointsOf(channel)) : std::nullopt;
    if (!missing) {
        const std::string is = kind == kSystem ? " is damaged or cut off" : " is " + kindText(kind);
        return {problem(channel.name, channel.component + is,
                        "Put " + kindText(kSystem) + " of that name there; it comes from " +
                            channel.origin + ".")};
    }
    Findings findings = describeMissing(channel, *missing);
    // The simulators take any setting, and none.
    if (config != nullptr && !isSimulator(bytes)) {
        append(findings, checkKeys(channel, *config));
    }
    if (findings.empty()) {
        findings.push_back(ok(channel.name, channel.component + " has all of its entry points",
                              channel.name + " (" + channel.component + ")"));
    }
    return findings;
}

} // namespace

Findings checkComponents(const fs::path& folder, const devkit::IniFile* config) {
    Findings findings;
    bool used = false;
    for (const Channel& channel : channels()) {
        append(findings, checkChannel(channel, folder, config));
        used = used || isThere(folder / channel.component);
    }
    if (!used) {
        findings.push_back(problem("channels", "no component of any channel is there",
                                   "Put that of the channels that the game uses beside the "
                                   "library: steam_api64.dll, KZOpenSDK.dll or frlogin.dll."));
    }
    return findings;
}

std::string simulatedComponents(const fs::path& folder) {
    std::string found;
    for (const Channel& channel : channels()) {
        if (isSimulator(devkit::readFile(folder / channel.component))) {
            found += (found.empty() ? "" : ", ") + channel.component;
        }
    }
    return found;
}

} // namespace vesk::doctor
