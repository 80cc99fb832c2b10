#include "messenger.h"

#include <sstream>

#include "support/files.h"

namespace vesk::test {

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
