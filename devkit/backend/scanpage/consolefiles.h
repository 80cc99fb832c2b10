#ifndef VESK_DEVKIT_BACKEND_SCANPAGE_CONSOLEFILES_H
#define VESK_DEVKIT_BACKEND_SCANPAGE_CONSOLEFILES_H

#include <string_view>

namespace vesk::backend {

extern const std::string_view kConsoleHtml;
extern const std::string_view kConsoleCss;
extern const std::string_view kConsoleJs;
extern const std::string_view kConsoleIcon;

} // namespace vesk::backend

#endif
