#include "logreader.h"

#include <utility>

namespace vesk::logread {

LogReader::LogReader(RecordConsumer& consumer, RecordFilter filter, bool redact)
    : mConsumer(consumer), mFilter(std::move(filter)),
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

void LogReader::startAnew() {
    mSplitter.flush();
    mSplitter.reset();
}

void LogReader::take(const RawRecord& raw) {
    LogRecord record = mDecoder.decode(raw);
    // Before the filter, so that a secret of a record that is not shown is known in the next one.
    if (mRedactor) {
        redact(record);
    }
    if (mFilter.passes(record)) {
        mConsumer.take(record);
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
