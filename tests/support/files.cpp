#include "files.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace vesk::test {

namespace {

const std::string kStart = "jEoK\x1c[k."; // "VESK [W." scrambled

/// A file in which no line feed lacks its carriage return was written in Windows' text mode, which
/// puts one before every line feed, also before those that scrambling has made.
std::string undoTextMode(const std::string& bytes) {
    std::string plain;
    for (const char c : bytes) {
        if (c == '\n') {
            if (plain.empty() || plain.back() != '\r') {
                return bytes;
            }
            plain.back() = c;
        } else {
            plain += c;
        }
    }
    return plain;
}

std::string unscrambled(std::string line) {
    for (size_t i = 0; i + 2 < line.size(); i += 2) {
        line[i] = static_cast<char>(line[i] ^ 0x3C);
    }
    return line;
}

} // namespace

std::string readFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<std::string> readSdkLog(const std::filesystem::path& file) {
    const std::string text = undoTextMode(readFile(file));
    std::vector<std::string> lines;
    for (size_t at = text.find(kStart); at != std::string::npos;) {
        const size_t end = text.find(kStart, at + 1);
        const std::string record = text.substr(at, end - at);
        lines.push_back(unscrambled(record.substr(0, record.size() - 1)));
        at = end;
    }
    return lines;
}

size_t countSdkLogLines(const std::filesystem::path& file, const std::string& text) {
    const auto lines = readSdkLog(file);
    return static_cast<size_t>(std::count_if(lines.begin(), lines.end(), [&](const auto& line) {
        return line.find(text) != std::string::npos;
    }));
}

void writeFile(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    if (value == nullptr) {
        throw std::runtime_error(std::string(name) + " is not set: use tests/support/run-case.sh");
    }
    return value;
}

ProgramRun runProgram(const std::filesystem::path& folder, const std::string& name,
                      const std::string& arguments, const std::string& before) {
    std::filesystem::path program = folder / name;
    if (!std::filesystem::exists(program)) {
        program += ".exe";
    }
    const std::filesystem::path out = (folder.parent_path() / "out.txt").make_preferred();
    const std::filesystem::path err = (folder.parent_path() / "err.txt").make_preferred();
    const std::string command = before + program.make_preferred().string() + " " + arguments +
                                " >" + out.string() + " 2>" + err.string();
    const int status = std::system(command.c_str());
    // One system gives the exit status as it is, the other one eight bits further up.
    return {status > 0xFF ? status >> 8 : status, readFile(out), readFile(err)};
}

} // namespace vesk::test
