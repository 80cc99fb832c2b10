#include "logrecord.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <utility>

#include "common/text.h"

namespace vesk::logread {

namespace {

constexpr std::string_view kPrefix = "jEoK\x1c[k."; // "VESK [W." scrambled
// The prefix, the level, "][" and the first digit of the year.
constexpr size_t kStartLength = 12;
// Twice the longest message with its header: in text mode each byte may have got a second one.
constexpr size_t kLongestRecord = 2 * (0xA000 + 1024);

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

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

bool endsWithLabel(std::string_view text) {
    return std::any_of(kLabels.begin(), kLabels.end(),
                       [&](std::string_view label) { return endsWith(text, label); });
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

bool isPlain(char c) {
    return c >= 0x20 && c < 0x7F;
}

/// Appends the character that begins the text and takes it away.
void appendCharacter(std::string& out, std::string_view& text) {
    const auto [character, code, isValid] = devkit::firstCharacter(text);
    text.remove_prefix(character.size());
    if (character == "\n" || character == "\t" || !devkit::isControl(code)) {
        out.append(character);
    } else if (character != "\r" || text.substr(0, 1) != "\n") {
        for (const char byte : character) {
            char escape[8] = {};
            std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(byte));
            out.append(escape);
        }
    }
}

void appendMember(std::string& out, std::string_view name, std::string_view text) {
    out.append(name);
    if (text.empty()) {
        out.append("null");
    } else {
        devkit::appendJsonText(out, text);
    }
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

RecordSplitter::RecordSplitter(Sink sink) : mSink(std::move(sink)) {}

/// More than the prefix is looked at, so that a message which quotes one does not start a record.
size_t RecordSplitter::findStart(size_t from) const {
    for (size_t at = mBuffer.find(kPrefix, from); at != std::string::npos;
         at = mBuffer.find(kPrefix, at + 1)) {
        if (mBuffer.size() - at < kStartLength) {
            return std::string::npos;
        }
        if (mBuffer[at + 9] == ']' && mBuffer[at + 10] == ('[' ^ 0x3C) &&
            devkit::isDigit(mBuffer[at + 11])) {
            return at;
        }
    }
    return std::string::npos;
}

void RecordSplitter::feed(std::string_view bytes) {
    mBuffer.append(bytes);
    for (;;) {
        const size_t next = findStart(mSearch);
        const size_t longest = mBegin + kLongestRecord;
        if (mInRecord && next > longest && mBuffer.size() >= longest + kStartLength) {
            handOver(longest);
        } else if (next != std::string::npos) {
            handOver(next);
            mInRecord = true;
            mSearch += kStartLength;
        } else {
            break;
        }
    }
    mSearch = std::max(mSearch, mBuffer.size() - std::min(mBuffer.size(), kStartLength));
    if (!mInRecord) {
        handOver(mSearch);
    }
    dropConsumed();
}

/// What waits ends here: a record, or foreign bytes.
void RecordSplitter::handOver(size_t end) {
    if (mInRecord) {
        emit(std::string_view(mBuffer).substr(mBegin, end - mBegin));
    } else {
        mForeign += end - mBegin;
    }
    mBegin = end;
    mSearch = end;
    mInRecord = false;
}

void RecordSplitter::emit(std::string_view bytes) {
    const bool textModeEnd = endsWith(bytes, "\r\n");
    RawRecord record;
    record.ended = endsWith(bytes, "\n");
    mTextModeEnds += textModeEnd ? 1 : 0;
    mPlainEnds += record.ended && !textModeEnd ? 1 : 0;
    // By the majority: a single record may end in a carriage return of its own, and foreign bytes
    // may bring a bare line feed into a file from Windows.
    record.textMode = mTextModeEnds > mPlainEnds;
    const size_t lineEnd = record.textMode && textModeEnd ? 2 : 1;
    record.bytes = bytes.substr(0, bytes.size() - (record.ended ? lineEnd : 0));
    mSink(record);
}

void RecordSplitter::flush() {
    if (mInRecord) {
        // The tail may break off inside the next record's first bytes.
        const size_t tail = mBuffer.rfind(kPrefix);
        const bool brokenOff =
            tail != std::string::npos && tail > mBegin && mBuffer.size() - tail < kStartLength;
        handOver(brokenOff ? tail : mBuffer.size());
    }
    handOver(mBuffer.size());
    dropConsumed();
}

bool RecordSplitter::waitsWithLineEnd() const {
    return mInRecord && endsWith(mBuffer, "\n");
}

void RecordSplitter::dropConsumed() {
    mBuffer.erase(0, mBegin);
    mSearch -= std::min(mSearch, mBegin);
    mBegin = 0;
}

void appendPrintable(std::string& out, std::string_view text) {
    while (!text.empty()) {
        const auto special = std::find_if_not(text.begin(), text.end(), isPlain);
        const auto plain = static_cast<size_t>(special - text.begin());
        out.append(text.substr(0, plain));
        text.remove_prefix(plain);
        if (!text.empty()) {
            appendCharacter(out, text);
        }
    }
}

void appendAsText(std::string& out, const LogRecord& record) {
    appendPrintable(out, record.head);
    appendPrintable(out, record.message);
    out.append(record.cut ? " [cut]\n" : "\n");
}

void appendAsJson(std::string& out, const LogRecord& record) {
    appendMember(out, "{\"time\":", record.time);
    appendMember(out, ",\"level\":", std::string_view(&record.level, record.level == 0 ? 0 : 1));
    appendMember(out, ",\"file\":", record.file);
    appendMember(out, ",\"method\":", record.method);
    out.append(",\"line\":").append(record.line == 0 ? "null" : std::to_string(record.line));
    out.append(",\"message\":");
    devkit::appendJsonText(out, record.message);
    out.append(record.cut ? ",\"cut\":true}\n" : ",\"cut\":false}\n");
}

} // namespace vesk::logread
