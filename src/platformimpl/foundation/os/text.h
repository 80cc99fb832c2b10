#ifndef VESK_PLATFORMIMPL_FOUNDATION_OS_TEXT_H
#define VESK_PLATFORMIMPL_FOUNDATION_OS_TEXT_H

#include <string>

namespace Braxel {
namespace VESK {
namespace os {

/// Text of the current locale to UTF-16. Empty when the conversion fails. Windows only.
std::wstring LocaleToWide(const std::string& text);

/// UTF-8 to UTF-16 and back, for texts that are no paths. Windows only.
std::wstring Utf8ToWide(const std::string& text);
std::string WideToUtf8(const std::wstring& text);

} // namespace os
} // namespace VESK
} // namespace Braxel

#endif
