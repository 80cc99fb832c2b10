#include "lasttime.h"

#include <algorithm>

#include "logfile.h"
#include "logreader.h"

namespace vesk::logread {

namespace {

// More than the longest record.
constexpr std::streamoff kTailSize = 0x20000;

class LastDay : public RecordConsumer {
public:
    void take(const LogRecord& record) override {
        if (!record.time.empty()) {
            day = record.time.substr(0, record.time.find(' '));
        }
    }

    std::string day;
};

} // namespace

std::string lastDay(const std::filesystem::path& path) {
    std::ifstream file = openLog(path);
    file.seekg(0, std::ios::end);
    const std::streamoff size = std::max<std::streamoff>(file.tellg(), 0);
    file.seekg(std::max<std::streamoff>(size - kTailSize, 0));
    std::string tail(static_cast<size_t>(kTailSize), '\0');
    file.read(tail.data(), kTailSize);
    LastDay last;
    LogReader reader(last, RecordFilter(), false);
    reader.feed(std::string_view(tail).substr(0, static_cast<size_t>(file.gcount())));
    reader.flush();
    return last.day;
}

} // namespace vesk::logread
