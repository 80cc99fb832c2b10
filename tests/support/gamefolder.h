#ifndef VESK_TESTS_SUPPORT_GAMEFOLDER_H
#define VESK_TESTS_SUPPORT_GAMEFOLDER_H

#include <filesystem>
#include <string>

namespace vesk::test {

/// The folder that run-case.sh has made for this case: the SDK with its configuration, a simulated
/// Steam client, and what both write there. Arrange it before the first call of the SDK.
class GameFolder {
public:
    /// Configures the SDK for the case's dev backend and installs the full Steam client.
    GameFolder();

    const std::filesystem::path& path() const { return mPath; }
    std::filesystem::path loginCache() const { return mPath / "upra_login.txt"; }

    /// Overrides keys of VESKConfig.ini: lines of "KEY=VALUE".
    void configure(const std::string& lines) const;
    /// Says how the Steam client behaves from now on: the lines of steam_sim.ini.
    void simulate(const std::string& settings) const;
    /// Replaces the Steam client: "steam_full", "steam_partial" or "steam_noinit".
    void installSteam(const std::string& variant) const;

    /// The calls of this Steam entry point. Fails the test when one came with a wrong argument.
    size_t steamCalls(const std::string& entryPoint) const;
    /// The lines of the SDK's log that hold @p text.
    size_t logLines(const std::string& text) const;

private:
    std::filesystem::path mPath;
};

} // namespace vesk::test

#endif
