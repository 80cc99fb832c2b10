#ifndef VESK_TESTS_SUPPORT_GAMEFOLDER_H
#define VESK_TESTS_SUPPORT_GAMEFOLDER_H

#include <filesystem>
#include <string>
#include <vector>

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

/// A messenger's simulated component in the game's folder.
class Messenger {
public:
    /// Installs the full variant. @param simulator the name of its files, "ferno" or "kz"
    Messenger(const GameFolder& game, const char* simulator, const char* fileName);

    /// Replaces the component by another variant of the simulator, "full" or "partial".
    void install(const std::string& variant) const;
    /// Says how the component behaves from now on.
    void script(const std::string& settings) const;
    /// The lines that the component has written down and that hold @p text.
    std::vector<std::string> componentLines(const std::string& text) const;

    const std::filesystem::path file;

private:
    const std::filesystem::path mFolder;
    const std::string mSimulator;
};

} // namespace vesk::test

#endif
