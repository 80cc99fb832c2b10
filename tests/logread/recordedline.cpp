#include "logread/recordedline.h"

#include <cstdlib>

namespace vesk::test {

namespace {

// No text that is logged holds it: they all were C strings.
constexpr char kEnd = '\0';

std::string takeField(std::string_view& bytes) {
    const size_t end = bytes.find(kEnd);
    std::string field(bytes.substr(0, end));
    bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    return field;
}

} // namespace

std::string RecordedLine::toBytes() const {
    return level + file + kEnd + method + kEnd + std::to_string(line) + kEnd + message + kEnd;
}

std::optional<RecordedLine> RecordedLine::takeFrom(std::string_view& bytes) {
    if (bytes.empty()) {
        return std::nullopt;
    }
    RecordedLine taken;
    taken.level = bytes.front();
    bytes.remove_prefix(1);
    taken.file = takeField(bytes);
    taken.method = takeField(bytes);
    taken.line = std::atoi(takeField(bytes).c_str());
    taken.message = takeField(bytes);
    return taken;
}

// By the documented rules: a plain '<' at an even index of the record, but for its last two bytes,
// becomes the zero byte that ends it; and a message has 40,959 bytes at most.
std::optional<std::string> RecordedLine::messageInTheLog() const {
    const std::string logged = message.substr(0, 40959);
    const std::string record = std::string("VESK [W.D][2026-11-24 13:53:09.383][") + file + "," +
                               method + "," + std::to_string(line) + "]" + logged;
    for (size_t at = 0; at + 2 < record.size(); at += 2) {
        if (record[at] == '<') {
            return std::nullopt;
        }
    }
    return logged;
}

} // namespace vesk::test
