#include "timestamp.h"

namespace vesk::logread {

namespace {

/// Whether the text looks like the pattern, in which '0' stands for any digit.
bool looksLike(std::string_view text, std::string_view pattern) {
    if (text.size() != pattern.size()) {
        return false;
    }
    for (size_t i = 0; i < text.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        if (pattern[i] == '0' ? !isDigit : text[i] != pattern[i]) {
            return false;
        }
    }
    return true;
}

int64_t number(std::string_view text, size_t at, size_t length) {
    int64_t value = 0;
    for (const char c : text.substr(at, length)) {
        value = value * 10 + (c - '0');
    }
    return value;
}

/// Days of the Gregorian calendar; a year begins in March, so that a leap day is its last.
int64_t dayNumber(int64_t year, int64_t month, int64_t day) {
    const int64_t marchYear = month > 2 ? year : year - 1;
    const int64_t marchMonth = (month + 9) % 12;
    return marchYear * 365 + marchYear / 4 - marchYear / 100 + marchYear / 400 +
           (marchMonth * 153 + 2) / 5 + day;
}

} // namespace

std::optional<int64_t> toMilliseconds(std::string_view time) {
    if (!looksLike(time, "0000-00-00 00:00:00.000")) {
        return std::nullopt;
    }
    const int64_t days = dayNumber(number(time, 0, 4), number(time, 5, 2), number(time, 8, 2));
    const int64_t minutes = (days * 24 + number(time, 11, 2)) * 60 + number(time, 14, 2);
    return (minutes * 60 + number(time, 17, 2)) * 1000 + number(time, 20, 3);
}

bool isTime(std::string_view text) {
    return text.size() > 11 && looksLike(text.substr(0, 11), "0000-00-00 ") &&
           isTimeOfDay(text.substr(11));
}

bool isTimeOfDay(std::string_view text) {
    return looksLike(text, "00:00") || looksLike(text, "00:00:00");
}

} // namespace vesk::logread
