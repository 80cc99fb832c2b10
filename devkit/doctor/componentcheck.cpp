#include "componentcheck.h"

#include <string>
#include <vector>

#include "filecheck.h"

namespace fs = std::filesystem;

namespace vesk::doctor {

namespace {

struct EntryPoint {
    const char* name;
    const char* without; ///< what does not work then; null when no login works
};

struct Channel {
    const char* name;
    const char* component;
    const char* origin;
    std::vector<const char*> keys;
    bool keysNeeded;
    std::vector<EntryPoint> entryPoints;
};

const std::vector<Channel>& channels() {
    static const std::vector<Channel> all = {
        {"KZ",
         "KZOpenSDK.dll",
         "the messenger's maker",
         {"KZ_APP_ID", "KZ_APP_KEY"},
         true,
         {{"DllGetClassObject", nullptr}}},
        {"Ferno",
         "frlogin.dll",
         "the messenger's maker",
         {"FERNO_APP_ID"},
         true,
         {{"frlogin_init", nullptr},
          {"frlogin_req_qrcode", nullptr},
          {"frlogin_req_client_tmp_token", "no token can be refreshed"},
          {"frlogin_req_logout", "a logout does not reach the messenger"},
          {"frlogin_uninit", "the component is never shut down"}}},
        {"Steam",
         "steam_api64.dll",
         "the Steam SDK",
         {"STEAM_APP_ID"},
         false,
         {{"SteamAPI_Init", nullptr},
          {"SteamAPI_SteamUser_v020", nullptr},
          {"SteamAPI_ISteamUser_GetSteamID", nullptr},
          {"SteamAPI_ISteamUser_GetAuthSessionTicket", nullptr},
          {"SteamAPI_RestartAppIfNecessary", "a game that was not started by Steam goes on"},
          {"SteamAPI_ISteamUser_CancelAuthTicket", "a ticket stays valid after a logout"},
          {"SteamAPI_IsSteamRunning", "the log does not say whether Steam is running"},
          {"SteamAPI_Shutdown", "Steam is never shut down"}}},
    };
    return all;
}

bool isNumberZero(const std::string& value) {
    return value.find_first_not_of('0') == std::string::npos;
}

Findings checkEntryPoints(const Channel& channel, const BinaryFile& file) {
    const std::string remedy = std::string("Put the version of ") + channel.component +
                               " there that the SDK was made for; it comes from " + channel.origin +
                               ".";
    Findings findings;
    for (const EntryPoint& entry : channel.entryPoints) {
        if (file.exports.count(entry.name) != 0) {
            continue;
        }
        const std::string found = std::string(channel.component) + " does not export " + entry.name;
        findings.push_back(entry.without == nullptr
                               ? problem(channel.name, found + ": no login works", remedy)
                               : warning(channel.name, found + ": " + entry.without, remedy));
    }
    return findings;
}

Findings checkSettings(const Channel& channel, const IniFile& config) {
    Findings findings;
    for (const char* key : channel.keys) {
        if (channel.keysNeeded && config.value(key).empty()) {
            findings.push_back(
                problem(channel.name,
                        std::string(channel.component) + " is there, but " + key + " is not set",
                        std::string("Add ") + key + " to VESKConfig.ini; " + channel.origin +
                            " has given you the value. Or remove " + channel.component + "."));
        }
    }
    return findings;
}

Findings checkMissing(const Channel& channel, const IniFile& config) {
    for (const char* key : channel.keys) {
        if (!isNumberZero(config.value(key))) {
            return {problem(
                channel.name, std::string(key) + " is set, but there is no " + channel.component,
                std::string("Put ") + channel.component + " beside the library; it " +
                    "comes from " + channel.origin +
                    ". Or leave the setting empty: the game does not use " + channel.name + ".")};
        }
    }
    return {ok(channel.name, std::string("not used: neither ") + channel.component +
                                 " nor its settings are there")};
}

Findings checkChannel(const Channel& channel, const fs::path& folder, const IniFile& config,
                      BinaryFile::Kind system) {
    const fs::path path = folder / channel.component;
    std::error_code ignored;
    const bool isKz = std::string(channel.name) == "KZ";
    if (isKz && system == BinaryFile::Kind::Linux64) {
        return {ok(channel.name, "not on Linux: its component is made for Windows only")};
    }
    if (!fs::exists(path, ignored)) {
        return checkMissing(channel, config);
    }
    const BinaryFile file = readBinaryFile(fileBytes(path));
    if (file.kind != system || file.damaged) {
        const std::string found =
            file.damaged ? "is damaged or cut off" : "is " + kindText(file.kind);
        return {problem(channel.name, std::string(channel.component) + " " + found,
                        std::string("Put ") + kindText(system) +
                            " of that name there; it comes from " + channel.origin + ".")};
    }
    Findings findings = checkEntryPoints(channel, file);
    const Findings settings = checkSettings(channel, config);
    findings.insert(findings.end(), settings.begin(), settings.end());
    if (findings.empty()) {
        findings.push_back(
            ok(channel.name, std::string(channel.component) + " has all of its " +
                                 "entry points: " + std::to_string(channel.entryPoints.size())));
    }
    return findings;
}

} // namespace

Findings checkComponents(const fs::path& folder, const IniFile& config, BinaryFile::Kind system) {
    Findings findings;
    bool used = false;
    for (const Channel& channel : channels()) {
        const Findings more = checkChannel(channel, folder, config, system);
        findings.insert(findings.end(), more.begin(), more.end());
        std::error_code ignored;
        used = used || fs::exists(folder / channel.component, ignored);
    }
    if (!used) {
        findings.push_back(problem("channels", "no component of any channel is there",
                                   "Put that of the channels that the game uses beside the "
                                   "library: steam_api64.dll, KZOpenSDK.dll or frlogin.dll."));
    }
    return findings;
}

} // namespace vesk::doctor
