#include "simulation.h"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>

#include "own_path.h"

namespace vesk::steamsim {
namespace {

void appendCall(const std::string& line) {
    std::ofstream(ownFolder() / "steam_sim_calls.txt", std::ios::app | std::ios::binary)
        << line << '\n';
}

} // namespace

Simulation::Simulation(const char* exportName) : mExportName(exportName) {
    std::stringstream settings;
    settings << std::ifstream(ownFolder() / "steam_sim.ini").rdbuf();
    mSettings = settings.str();
    appendCall(mExportName);
    std::this_thread::sleep_for(std::chrono::milliseconds(number("call_ms", 0)));
}

bool Simulation::flag(const char* key, bool otherwise) const {
    return text(key, otherwise ? "1" : "0") == "1";
}

uint64_t Simulation::number(const char* key, uint64_t otherwise) const {
    return std::strtoull(text(key, std::to_string(otherwise).c_str()).c_str(), nullptr, 10);
}

std::vector<uint8_t> Simulation::bytes(const char* key, const char* otherwise) const {
    const std::string hex = text(key, otherwise);
    std::vector<uint8_t> bytes;
    for (size_t i = 0; i + 1 < hex.size(); i += 2) {
        bytes.push_back(static_cast<uint8_t>(std::strtoul(hex.substr(i, 2).c_str(), nullptr, 16)));
    }
    return bytes;
}

void Simulation::complain(const char* what) const {
    appendCall(mExportName + ": " + what);
}

std::string Simulation::text(const char* key, const char* otherwise) const {
    const std::string start = std::string(key) + '=';
    std::istringstream lines(mSettings);
    for (std::string line; std::getline(lines, line);) {
        if (line.compare(0, start.size(), start) == 0) {
            const size_t end = line.find_last_not_of(" \t\r");
            return line.substr(start.size(), end + 1 - start.size());
        }
    }
    return otherwise;
}

} // namespace vesk::steamsim
