#include "settings.h"

#include <cstdlib>

#include "server.h"

namespace vesk::kzsim {
namespace {

std::string contentOf(const std::wstring& path) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return {};
    }
    std::string content;
    char buffer[4096];
    DWORD size = 0;
    while (ReadFile(file, buffer, sizeof(buffer), &size, nullptr) && size != 0) {
        content.append(buffer, size);
    }
    CloseHandle(file);
    return content;
}

} // namespace

Settings::Settings() : mText('\n' + contentOf(Server::besideMe(L"kz_sim.ini")) + '\n') {}

std::string Settings::text(const char* key, const char* otherwise) const {
    const std::string start = '\n' + std::string(key) + '=';
    const size_t found = mText.find(start);
    if (found == std::string::npos) {
        return otherwise;
    }
    const size_t begin = found + start.size();
    const std::string value = mText.substr(begin, mText.find('\n', begin) - begin);
    return value.substr(0, value.find_last_not_of(" \t\r") + 1);
}

long Settings::number(const char* key, long otherwise) const {
    const std::string value = text(key, "");
    return value.empty() ? otherwise : static_cast<long>(std::strtoll(value.c_str(), nullptr, 0));
}

} // namespace vesk::kzsim
