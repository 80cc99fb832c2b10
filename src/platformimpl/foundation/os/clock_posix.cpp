#include "platformimpl/foundation/os/clock.h"

#include <ctime>

namespace Braxel {
namespace VESK {
namespace os {

WallTime Now() {
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    return {static_cast<int64_t>(now.tv_sec), static_cast<int32_t>(now.tv_nsec / 1000000)};
}

int64_t UnixSeconds() {
    return Now().seconds;
}

LocalTime LocalNow() {
    const WallTime now = Now();
    const time_t seconds = static_cast<time_t>(now.seconds);
    tm local = {};
    localtime_r(&seconds, &local);
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,   local.tm_hour,
            local.tm_min,         local.tm_sec,     now.milliseconds};
}

uint32_t TickCount() {
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint32_t>(static_cast<int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000);
}

} // namespace os
} // namespace VESK
} // namespace Braxel
