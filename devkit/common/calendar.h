#ifndef VESK_DEVKIT_COMMON_CALENDAR_H
#define VESK_DEVKIT_COMMON_CALENDAR_H

#include <cstdint>
#include <string>

namespace vesk::devkit {

/// A day of the Gregorian calendar.
struct Day {
    int64_t year = 1970;
    int64_t month = 1;
    int64_t day = 1;
};

/// Days between 1970-01-01 and that day; earlier ones are negative.
int64_t daysSince1970(const Day& day);

/// The day that so many days after 1970-01-01 is.
Day dayOf(int64_t daysSince1970);

/// "2026-11-24", the day in UTC of a time in seconds since 1970.
std::string dayText(int64_t unixSeconds);

} // namespace vesk::devkit

#endif
