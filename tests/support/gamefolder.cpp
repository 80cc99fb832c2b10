#include "gamefolder.h"

#include <gtest/gtest.h>
#include <sstream>

#include "files.h"

namespace fs = std::filesystem;

namespace vesk::test {

GameFolder::GameFolder() : mPath(environment("VESK_TEST_FOLDER")) {
    configure("VESK_URL=" + environment("VESK_TEST_BACKEND_URL") +
              "\nVESK_GAME_ID=1106\nVESK_SDK_KEY=dev-key\nSTEAM_APP_ID=480\n"
              "FERNO_APP_ID=f-7\nKZ_APP_ID=k-7\nKZ_APP_KEY=k-key");
    installSteam("steam_full");
}

void GameFolder::configure(const std::string& lines) const {
    // The first line of a key is the one that counts.
    const std::string before = readFile(mPath / "VESKConfig.ini");
    writeFile(mPath / "VESKConfig.ini", lines + "\n" + before);
}

void GameFolder::simulate(const std::string& settings) const {
    writeFile(mPath / "steam_sim.ini", settings);
}

void GameFolder::installSteam(const std::string& variant) const {
    fs::remove(mPath / "steam_api64.dll");
    fs::copy_file(mPath / variant / "steam_api64.dll", mPath / "steam_api64.dll");
}

size_t GameFolder::steamCalls(const std::string& entryPoint) const {
    std::istringstream calls(readFile(mPath / "steam_sim_calls.txt"));
    size_t count = 0;
    for (std::string line; std::getline(calls, line);) {
        EXPECT_EQ(line.find(':'), std::string::npos) << "the simulator complains: " << line;
        count += line == "SteamAPI_" + entryPoint ? 1 : 0;
    }
    return count;
}

size_t GameFolder::logLines(const std::string& text) const {
    return countSdkLogLines(mPath / "veskrecord.log", text);
}

Messenger::Messenger(const GameFolder& game, const char* simulator, const char* fileName)
    : file(game.path() / fileName), mFolder(game.path()), mSimulator(simulator) {
    install("full");
}

void Messenger::install(const std::string& variant) const {
    std::filesystem::remove(file);
    std::filesystem::copy_file(mFolder / (mSimulator + "_" + variant) / file.filename(), file);
}

void Messenger::script(const std::string& settings) const {
    writeFile(mFolder / (mSimulator + "_sim.ini"), settings);
}

std::vector<std::string> Messenger::componentLines(const std::string& text) const {
    std::istringstream lines(readFile(mFolder / (mSimulator + "_sim_calls.txt")));
    std::vector<std::string> found;
    for (std::string line; std::getline(lines, line);) {
        if (line.find(text) != std::string::npos) {
            found.push_back(line);
        }
    }
    return found;
}

} // namespace vesk::test
