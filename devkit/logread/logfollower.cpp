#include "logfollower.h"

#include <algorithm>
#include <utility>

#include "logfile.h"

namespace vesk::logread {

namespace {

constexpr size_t kBufferSize = 0x100000;
constexpr size_t kFirstBytes = 256;

size_t readSome(std::istream& file, char* bytes, size_t size) {
    file.read(bytes, static_cast<std::streamsize>(size));
    return static_cast<size_t>(file.gcount());
}

} // namespace

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
