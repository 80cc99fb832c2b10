#include "platformimpl/foundation/os/text.h"

#include <cstdlib>
#include <windows.h>

namespace Braxel {
namespace VESK {
namespace os {

std::string WideToOem(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    const int needed =
        WideCharToMultiByte(CP_OEMCP, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    if (needed <= 0) {
        return {};
    }
    std::string oem(static_cast<size_t>(needed), '\0');
    if (WideCharToMultiByte(CP_OEMCP, 0, text.data(), length, &oem[0], needed, nullptr, nullptr) !=
        needed) {
        return {};
    }
    return oem;
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
