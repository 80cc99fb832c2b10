#include "calendar.h"

#include <cstdio>

namespace vesk::devkit {

namespace {

constexpr int64_t kSecondsADay = 86400;

int64_t quotientRoundedDown(int64_t number, int64_t divisor) {
    return number / divisor - (number % divisor < 0 ? 1 : 0);
}

} // namespace

// The year begins with March here, so that a leap day is its last.
int64_t daysSince1970(const Day& day) {
    const int64_t year = day.month > 2 ? day.year : day.year - 1;
    const int64_t month = (day.month + 9) % 12;
    return 365 * year + quotientRoundedDown(year, 4) - quotientRoundedDown(year, 100) +
           quotientRoundedDown(year, 400) + (153 * month + 2) / 5 + day.day - 1 - 719468;
}

Day dayOf(int64_t days) {
    Day found;
    // A guess that is too early by a year at most.
    found.year = 1969 + quotientRoundedDown(days * 400, 146097);
    while (days >= daysSince1970({found.year + 1, 1, 1})) {
        ++found.year;
    }
    while (found.month < 12 && days >= daysSince1970({found.year, found.month + 1, 1})) {
        ++found.month;
    }
    found.day = 1 + days - daysSince1970({found.year, found.month, 1});
    return found;
}

std::string dayText(int64_t unixSeconds) {
    const Day day = dayOf(quotientRoundedDown(unixSeconds, kSecondsADay));
    char text[64];
    std::snprintf(text, sizeof text, "%04lld-%02lld-%02lld", static_cast<long long>(day.year),
                  static_cast<long long>(day.month), static_cast<long long>(day.day));
    return text;
}

} // namespace vesk::devkit
