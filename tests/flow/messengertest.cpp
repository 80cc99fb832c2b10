#include "flow/messengertest.h"

#include <sstream>

namespace vesk::test {

MessengerTest::MessengerTest(const char* name, const char* simulator, const char* fileName)
    : channel(name), component(simulator), file(fileName) {
    game.configure("FERNO_APP_ID=f-7\nKZ_APP_ID=k-7\nKZ_APP_KEY=k-key");
    install("full");
}

void MessengerTest::install(const std::string& variant) const {
    std::filesystem::remove(game.path() / file);
    std::filesystem::copy_file(game.path() / (component + "_" + variant) / file,
                               game.path() / file);
}

void MessengerTest::script(const std::string& settings) const {
    writeFile(game.path() / (component + "_sim.ini"), settings);
}

std::vector<std::string> MessengerTest::componentLines(const std::string& text) const {
    std::istringstream lines(readFile(game.path() / (component + "_sim_calls.txt")));
    std::vector<std::string> found;
    for (std::string line; std::getline(lines, line);) {
        if (line.find(text) != std::string::npos) {
            found.push_back(line);
        }
    }
    return found;
}

void MessengerTest::startLogin() {
    start();
    VESKLogin::Login(channel.c_str(), "", "", "");
}

VESKLoginRet MessengerTest::scanAndLogin() {
    startLogin();
    return observer.nextLogin().ret;
}

} // namespace vesk::test
