#include "files.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace vesk::test {

std::string readFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
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

int triesOr(int usual) {
    const char* value = std::getenv("VESK_TRIES");
    return value == nullptr ? usual : std::atoi(value);
}

} // namespace vesk::test
