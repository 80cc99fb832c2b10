#include "platformimpl/foundation/os/text.h"

#include <windows.h>
#include <cstdlib>

namespace Braxel {
namespace VESK {
namespace os {

std::string WideToUtf8(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    const int needed =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    if (needed <= 0) {
        return {};
    }
    std::string bytes(static_cast<size_t>(needed), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, &bytes[0], needed, nullptr, nullptr);
    return bytes;
}

std::wstring Utf8ToWide(const std::string& text) {
    const int length = static_cast<int>(text.size());
    const int needed = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
    if (needed <= 0) {
        return {};
    }
    std::wstring wide(static_cast<size_t>(needed), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), length, &wide[0], needed);
    return wide;
}

std::wstring LocaleToWide(const std::string& text) {
    const size_t failed = static_cast<size_t>(-1);
    const size_t needed = std::mbstowcs(nullptr, text.c_str(), 0);
    if (needed == failed) {
        return {};
    }
    std::wstring wide(needed + 1, L'\0');
    const size_t written = std::mbstowcs(&wide[0], text.c_str(), wide.size());
    if (written == failed) {
        return {};
    }
    wide.resize(written);
    return wide;
}

} // namespace os
} // namespace VESK
} // namespace Braxel
