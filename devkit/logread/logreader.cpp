#include "logreader.h"

#include <algorithm>
#include <utility>

#include "common/text.h"

namespace vesk::logread {

namespace {

constexpr std::string_view kLevels = "DIWE";

/// Ids end in a counter: "...-1" is not in "...-12".
bool holdsId(std::string_view text, std::string_view id) {
    for (size_t at = text.find(id); at != std::string_view::npos; at = text.find(id, at + 1)) {
        const size_t end = at + id.size();
        if ((at == 0 || !devkit::isDigit(text[at - 1])) &&
            (end == text.size() || !devkit::isDigit(text[end]))) {
            return true;
        }
    }
    return false;
}

/// Whether the text looks like the pattern, in which '0' stands for any digit.
bool looksLike(std::string_view text, std::string_view pattern) {
    return std::equal(
        text.begin(), text.end(), pattern.begin(), pattern.end(),
        [](char c, char wanted) { return wanted == '0' ? devkit::isDigit(c) : c == wanted; });
}

} // namespace

bool RecordFilter::passes(const LogRecord& record) {
    mIsTime = record.time.empty() ? mIsTime : record.time >= since;
    if (!since.empty() && !mIsTime) {
        return false;
    }
    const size_t wanted = kLevels.find(level);
    const size_t found = record.level == 0 ? 0 : kLevels.find(record.level);
    return found >= wanted && (sequenceId.empty() || holdsId(record.message, sequenceId));
}

bool isTime(std::string_view text) {
    return looksLike(text, "0000-00-00 00:00") || looksLike(text, "0000-00-00 00:00:00");
}

bool isTimeOfDay(std::string_view text) {
    return looksLike(text, "00:00") || looksLike(text, "00:00:00");
}

LogReader::LogReader(RecordConsumer consumer, RecordFilter filter, bool redact)
    : mConsumer(std::move(consumer)), mFilter(std::move(filter)),
      mSplitter([this](const RawRecord& raw) { take(raw); }) {
    if (redact) {
        mRedactor.emplace();
    }
}

void LogReader::flushWhole() {
    if (mSplitter.waitsWithLineEnd()) {
        mSplitter.flush();
    }
}

void LogReader::take(const RawRecord& raw) {
    LogRecord record = decodeRecord(raw, mText);
    // Before the filter, so that a secret of a record that is not shown is known in the next one.
    if (mRedactor) {
        redact(record);
    }
    if (mFilter.passes(record)) {
        mConsumer(record);
    }
}

void LogReader::redact(LogRecord& record) {
    mMessage = mRedactor->redact(record.message);
    record.message = mMessage;
    if (record.cut) {
        // Without its end a header may be anything.
        mHead = mRedactor->redact(record.head);
        mMethod = mRedactor->redact(record.method);
        record.head = mHead;
        record.method = mMethod;
    }
}

} // namespace vesk::logread
