#include "platformimpl/foundation/os/clock.h"

#include <windows.h>
#include <sys/timeb.h>

namespace Braxel {
namespace VESK {
namespace os {

WallTime Now() {
    struct __timeb64 now = {};
    _ftime64(&now);
    return {static_cast<int64_t>(now.time), static_cast<int32_t>(now.millitm)};
}

int64_t UnixSeconds() {
    return Now().seconds;
}

LocalTime LocalNow() {
    SYSTEMTIME now = {};
    GetLocalTime(&now);
    return {now.wYear,   now.wMonth,  now.wDay,         now.wHour,
            now.wMinute, now.wSecond, now.wMilliseconds};
}

uint32_t TickCount() {
    return GetTickCount();
}

} // namespace os
} // namespace VESK
} // namespace Braxel
