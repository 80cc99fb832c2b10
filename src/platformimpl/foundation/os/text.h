#ifndef VESK_PLATFORMIMPL_FOUNDATION_OS_TEXT_H
#define VESK_PLATFORMIMPL_FOUNDATION_OS_TEXT_H

#include <string>

namespace Braxel {
namespace VESK {
namespace os {

/// UTF-16 to the OEM code page. Empty when the conversion fails. Windows only.
std::string WideToOem(const std::wstring& text);

/// Text of the current locale to UTF-16. Empty when the conversion fails. Windows only.
std::wstring LocaleToWide(const std::string& text);

} // namespace os
} // namespace VESK
} // namespace Braxel

#endif
