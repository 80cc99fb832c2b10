#ifndef VESK_PLATFORMIMPL_FOUNDATION_OS_CLOCK_H
#define VESK_PLATFORMIMPL_FOUNDATION_OS_CLOCK_H

#include <cstdint>

namespace Braxel {
namespace VESK {
namespace os {

/// The wall clock: whole Unix seconds and the milliseconds within that second.
struct WallTime {
    int64_t seconds;
    int32_t milliseconds;
};

/// The wall clock in the user's time zone, as log stamps show it. Months count from 1.
struct LocalTime {
    int year;
    int month;
    int day;
    int hour;
    int minute;
    int second;
    int millisecond;
};

WallTime Now();

/// The whole seconds of Now().
int64_t UnixSeconds();

LocalTime LocalNow();

/// Milliseconds since some start, as the system's tick counter gives them; wraps at 32 bits.
uint32_t TickCount();

} // namespace os
} // namespace VESK
} // namespace Braxel

#endif
