#include "certificate.h"

#include <cstdio>
#include <stdexcept>
#include <utility>

#include "derreader.h"

namespace vesk::doctor {

namespace {

constexpr unsigned kInteger = 0x02;
constexpr unsigned kObjectId = 0x06;
constexpr unsigned kUtcTime = 0x17;
constexpr unsigned kGeneralizedTime = 0x18;
constexpr unsigned kSequence = 0x30;
constexpr unsigned kVersion = 0xA0;
constexpr int64_t kSecondsADay = 86400;

/// Days between 1970-01-01 and a day of the Gregorian calendar; the year begins with March.
int64_t daysSince1970(int64_t year, int64_t month, int64_t day) {
    const int64_t marchYear = month > 2 ? year : year - 1;
    const int64_t marchMonth = (month + 9) % 12;
    return 365 * marchYear + marchYear / 4 - marchYear / 100 + marchYear / 400 +
           (153 * marchMonth + 2) / 5 + day - 1 - 719468;
}

int64_t timeOf(DerReader::Element element) {
    std::string digits(element.content);
    if (element.tag == kUtcTime && digits.size() > 1) {
        digits.insert(0, digits[0] >= '5' ? "19" : "20");
    }
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    if ((element.tag != kUtcTime && element.tag != kGeneralizedTime) ||
        std::sscanf(digits.c_str(), "%4d%2d%2d%2d%2d%2d", &year, &month, &day, &hour, &minute,
                    &second) != 6) {
        throw std::runtime_error("no time that is known");
    }
    return daysSince1970(year, month, day) * kSecondsADay + hour * 3600 + minute * 60 + second;
}

} // namespace

Certificate::Certificate(std::string_view der) {
    DerReader all(DerReader(der).expect(kSequence));
    DerReader body(all.expect(kSequence));
    DerReader::Element serial = body.next();
    if (serial.tag == kVersion) {
        serial = body.next();
    }
    if (serial.tag != kInteger) {
        throw std::runtime_error("no serial number");
    }
    body.expect(kSequence); // the signature's algorithm
    mIssuer = body.expect(kSequence);
    DerReader validity(body.expect(kSequence));
    mBegin = timeOf(validity.next());
    mEnd = timeOf(validity.next());
    mSubject = body.expect(kSequence);
}

std::string Certificate::name(const std::string& der) {
    const std::string_view commonName = "\x55\x04\x03";
    const std::string_view organisation = "\x55\x04\x0A";
    std::string best;
    DerReader parts(der);
    for (auto set = parts.next(); set.tag != 0; set = parts.next()) {
        DerReader pair(DerReader(set.content).next().content);
        const DerReader::Element type = pair.next();
        std::string value(pair.next().content);
        if (type.tag == kObjectId && type.content == commonName) {
            return value;
        }
        if (type.tag == kObjectId && type.content == organisation) {
            best = std::move(value);
        }
    }
    return best.empty() ? "a certificate without a name" : best;
}

std::string dayText(int64_t unixSeconds) {
    int64_t days = unixSeconds / kSecondsADay;
    int64_t year = 1970;
    while (days >= daysSince1970(year + 1, 1, 1)) {
        ++year;
    }
    int64_t month = 1;
    while (month < 12 && days >= daysSince1970(year, month + 1, 1)) {
        ++month;
    }
    days -= daysSince1970(year, month, 1);
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", static_cast<int>(year),
                  static_cast<int>(month), static_cast<int>(days + 1));
    return text;
}

} // namespace vesk::doctor
