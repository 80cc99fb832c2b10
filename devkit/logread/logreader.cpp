#include "logreader.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>
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

constexpr size_t kBufferSize = 0x100000;
constexpr size_t kFirstBytes = 256;
// More than the longest record.
constexpr std::streamoff kTailSize = 0x20000;

/// The stream has failed when the log cannot be read. Throws when it is no plain file: a pipe or
/// device may never end, and even opening it may never return.
std::ifstream openLog(const std::filesystem::path& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        throw std::runtime_error(path.string() + " is no plain file");
    }
    return std::ifstream(path, std::ios::binary);
}

size_t readSome(std::istream& file, char* bytes, size_t size) {
    file.read(bytes, static_cast<std::streamsize>(size));
    return static_cast<size_t>(file.gcount());
}

/// @return false when the file has ended otherwise than at its end
bool feedRest(std::istream& file, LogReader& reader) {
    std::string buffer(kBufferSize, '\0');
    while (const size_t length = readSome(file, buffer.data(), buffer.size())) {
        reader.feed(std::string_view(buffer).substr(0, length));
    }
    return file.eof();
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

void readLog(const std::filesystem::path& path, LogReader& reader) {
    std::ifstream file = openLog(path);
    if (!feedRest(file, reader)) {
        throw std::runtime_error("cannot read " + path.string());
    }
    reader.flush();
}

std::string lastDay(const std::filesystem::path& path) {
    std::ifstream file = openLog(path);
    file.seekg(0, std::ios::end);
    const std::streamoff size = std::max<std::streamoff>(file.tellg(), 0);
    file.seekg(std::max<std::streamoff>(size - kTailSize, 0));
    std::string day;
    const auto take = [&day](const LogRecord& record) {
        if (!record.time.empty()) {
            day = record.time.substr(0, record.time.find(' '));
        }
    };
    LogReader reader(take, RecordFilter(), false);
    feedRest(file, reader);
    reader.flush();
    return day;
}

LogFollower::LogFollower(std::filesystem::path file, LogReader& reader)
    : mPath(std::move(file)), mReader(reader), mBuffer(kBufferSize, '\0') {}

bool LogFollower::poll() {
    std::ifstream file = openLog(mPath);
    if (!file.seekg(0, std::ios::end)) {
        return false;
    }
    const auto size = static_cast<uint64_t>(std::max<std::streamoff>(file.tellg(), 0));
    if (isAnotherFile(file, size)) {
        mReader.startAnew();
        mOffset = 0;
        mFirstBytes.clear();
    }
    if (size == mOffset) {
        mReader.flushWhole();
        return true;
    }
    file.clear();
    file.seekg(static_cast<std::streamoff>(mOffset));
    while (const size_t length = readSome(file, mBuffer.data(), mBuffer.size())) {
        if (mOffset == mFirstBytes.size() && mFirstBytes.size() < kFirstBytes) {
            mFirstBytes.append(mBuffer, 0, std::min(length, kFirstBytes - mFirstBytes.size()));
        }
        mOffset += length;
        mReader.feed(std::string_view(mBuffer).substr(0, length));
    }
    return true;
}

bool LogFollower::isAnotherFile(std::istream& file, uint64_t size) const {
    if (size < mOffset) {
        return true;
    }
    std::string first(mFirstBytes.size(), '\0');
    file.seekg(0);
    return readSome(file, first.data(), first.size()) != first.size() || first != mFirstBytes;
}

} // namespace vesk::logread
