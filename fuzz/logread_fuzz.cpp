// The log reader on bytes that no product has written. The first byte of an input says how the rest
// is to be taken, the second in how large pieces it arrives.
#include <cstdint>
#include <rapidjson/document.h>
#include <sstream>
#include <string>

#include "expect.h"
#include "loginstory.h"
#include "logread/logbytes.h"
#include "logreader.h"

namespace {

using namespace vesk::logread;
using vesk::fuzz::expect;

enum : unsigned { kClearText = 1, kTextMode = 2, kRedact = 4 };

/// Clear text becomes records, one a line, so that mutations reach what stands behind the
/// scrambling.
std::string scrambledLines(const std::string& text) {
    std::istringstream lines(text);
    std::string bytes;
    for (std::string line; std::getline(lines, line);) {
        bytes += vesk::test::scrambled(line);
    }
    return bytes;
}

void expectJson(const std::string& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        rapidjson::Document json;
        json.Parse<rapidjson::kParseValidateEncodingFlag>(line.data(), line.size());
        expect(!json.HasParseError() && json.IsObject(), "each line is a JSON object");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) {
        return 0;
    }
    const unsigned mode = data[0];
    const size_t piece = data[1] + 1U;
    std::string bytes(reinterpret_cast<const char*>(data) + 2, size - 2);
    if ((mode & kClearText) != 0) {
        bytes = scrambledLines(bytes);
    }
    if ((mode & kTextMode) != 0) {
        bytes = vesk::test::inTextMode(bytes);
    }
    const bool redact = (mode & kRedact) != 0;
    using vesk::test::printLog;
    const std::string shown = printLog(bytes, appendAsText, {}, redact, piece);
    expect(shown == printLog(bytes, appendAsText, {}, redact, bytes.size() + 1),
           "pieces are read as the whole is");
    // NOLINTNEXTLINE(misc-misleading-bidirectional): it is what must not come through
    for (const char* steering : {"\x1b", "\xc2\x9b", "\xe2\x80\xae"}) {
        expect(shown.find(steering) == std::string::npos, "nothing steers the terminal");
    }
    expectJson(printLog(bytes, appendAsJson, {}, redact, piece));
    LoginStory story;
    LogReader reader([&](const LogRecord& record) { story.take(record); }, {}, true);
    reader.feed(bytes);
    reader.flush();
    expect(reader.foreignBytes() <= bytes.size(), "no more bytes are foreign than there are");
    static_cast<void>(story.text());
    return 0;
}
