#include "logrecord.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace vesk::logread {

namespace {

constexpr char kKey = 0x3C;
constexpr size_t kLevelAt = 8; // after "VESK [W."
constexpr size_t kTimeAt = 11;
constexpr size_t kLongestTime = 32;

// The labels before what comes from outside and may begin with "<".
constexpr std::array<std::string_view, 6> kLabels = {
    "Body:", "body:", "msg:", "Message:", "Content:\n", "Json:"};

bool isLevel(char c) {
    return c == 'D' || c == 'I' || c == 'W' || c == 'E';
}

/// Most characters become one of these by scrambling, and none ends a whole record.
bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < 0x20 && c != '\n' && c != '\r' && c != '\t') || byte == 0x7F;
}

bool endsWithLabel(std::string_view text) {
    return std::any_of(kLabels.begin(), kLabels.end(), [&](std::string_view label) {
        return text.size() >= label.size() && text.substr(text.size() - label.size()) == label;
    });
}

std::string withoutTextMode(std::string_view bytes) {
    std::string text;
    for (size_t at = bytes.find("\r\n"); at != std::string_view::npos; at = bytes.find("\r\n")) {
        text.append(bytes.substr(0, at)).push_back('\n');
        bytes.remove_prefix(at + 2);
    }
    return text.append(bytes);
}

void flip(char& c) {
    c = static_cast<char>(c ^ kKey);
}

/// Takes readable text apart. @return false when the header does not reach its end.
bool parseRecord(std::string_view text, LogRecord& record) {
    record.message = text;
    if (text.size() < kTimeAt || !isLevel(text[kLevelAt])) {
        return false;
    }
    const size_t timeEnd = text.substr(0, kTimeAt + kLongestTime).find("][", kTimeAt);
    if (timeEnd == std::string_view::npos) {
        return false;
    }
    record.level = text[kLevelAt];
    record.time = text.substr(kTimeAt, timeEnd - kTimeAt);
    const size_t fileAt = timeEnd + 2;
    const size_t close = text.find(']', fileAt);
    const std::string_view place = text.substr(fileAt, close - fileAt);
    record.file = place.substr(0, place.find(','));
    const std::string_view rest = place.substr(std::min(place.size(), record.file.size() + 1));
    const size_t comma = rest.rfind(',');
    record.method = rest.substr(0, comma);
    if (close == std::string_view::npos || comma == std::string_view::npos) {
        record.head = text;
        record.message = {};
        return false;
    }
    const std::string_view number = rest.substr(comma + 1);
    std::from_chars(number.data(), number.data() + number.size(), record.line);
    record.head = text.substr(0, close + 1);
    record.message = text.substr(close + 1);
    return true;
}

} // namespace

LogRecord decodeRecord(const RawRecord& raw, std::string& text) {
    text = raw.textMode ? withoutTextMode(raw.bytes) : std::string(raw.bytes);
    const size_t length = text.size();
    // The last two bytes of a whole record are clear. Without an end they are most likely not here.
    const size_t scrambled = length - (raw.ended ? std::min<size_t>(length, 2) : 0);
    for (size_t i = 0; i < scrambled; i += 2) {
        flip(text[i]);
    }
    LogRecord record;
    record.cut = !parseRecord(text, record) || !raw.ended;
    // The format cuts at even lengths only, and then the last byte but one is scrambled too.
    if (raw.ended && length % 2 == 0 && length >= 2) {
        char& last = text[length - 2];
        const bool endIsControl = isControl(last);
        flip(last);
        record.cut = record.cut || endIsControl || endsWithLabel(text);
        if (!record.cut) {
            flip(last);
        }
    }
    return record;
}

} // namespace vesk::logread
