#include "simulator.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

#include "common/system.h"

namespace vesk::simulator {

namespace {

std::filesystem::path besideMe(std::string_view ending) {
    // Put together as the system has it: the library's own conversion takes a handle for ever.
    std::filesystem::path::string_type name(kName, kName + std::strlen(kName));
    name.append(ending.begin(), ending.end());
    return devkit::ownFolder() / name;
}

} // namespace

Settings::Settings()
    : mFile(devkit::readFile(besideMe("_sim.ini")), devkit::IniFile::Comments::WholeLines) {}

std::string Settings::text(const char* key, const char* otherwise) const {
    return mFile.value(key, otherwise);
}

int64_t Settings::number(const char* key, int64_t otherwise) const {
    const std::string text = mFile.value(key);
    const int base = text.find('x') == std::string::npos ? 10 : 16;
    // Unsigned, for those that take all 64 bits; a minus sign is heeded all the same.
    return text.empty() ? otherwise
                        : static_cast<int64_t>(std::strtoull(text.c_str(), nullptr, base));
}

void Settings::stay(const char* key) const {
    std::this_thread::sleep_for(std::chrono::milliseconds(number(key, 0)));
}

void writeDown(std::string_view line) {
    // Not a mutex: this needs neither a handle nor data of a thread, so that a program which loads
    // and frees the library again and again loses nothing.
    static std::atomic_flag busy = ATOMIC_FLAG_INIT;
    while (busy.test_and_set()) {
        std::this_thread::yield();
    }
    devkit::appendToFile(besideMe("_sim_calls.txt"), std::string(line) + '\n');
    busy.clear();
}

void writeDown(const devkit::JsonLine& line) {
    writeDown(line.text());
}

} // namespace vesk::simulator
