#include "logfile.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace vesk::logread {

namespace {

constexpr size_t kBufferSize = 0x100000;
constexpr size_t kFirstBytes = 256;
// More than the longest record.
constexpr std::streamoff kTailSize = 0x20000;

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

std::ifstream openLog(const std::filesystem::path& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        throw std::runtime_error(path.string() + " is no plain file");
    }
    return std::ifstream(path, std::ios::binary);
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
