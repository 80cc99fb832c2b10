#include "recordsplitter.h"

#include <algorithm>
#include <utility>

#include "common/text.h"

namespace vesk::logread {

namespace {

constexpr std::string_view kPrefix = "jEoK\x1c[k."; // "VESK [W." scrambled
// The prefix, the level, "][" and the first digit of the year.
constexpr size_t kStartLength = 12;
// Twice the longest message with its header: in text mode each byte may have got a second one.
constexpr size_t kLongestRecord = 2 * (0xA000 + 1024);

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

} // namespace

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

} // namespace vesk::logread
