#include "foundation/json/veskjsonparse.h"

#include <algorithm>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "foundation/log/vesklogger.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr size_t kMaxDepth = 256;

/// Whether there are too few opening brackets to nest too deep: so in all but hostile texts.
bool HasFewBrackets(const std::string& json) {
    size_t brackets = 0;
    for (const char bracket : {'[', '{'}) {
        size_t at = json.find(bracket);
        while (at != std::string::npos && brackets <= kMaxDepth) {
            ++brackets;
            at = json.find(bracket, at + 1);
        }
    }
    return brackets <= kMaxDepth;
}

/// Offset of the first bracket of valid JSON that nests too deep; npos when there is none.
size_t FindTooDeep(const std::string& json) {
    size_t depth = 0;
    bool inString = false;
    for (size_t at = 0; at < json.size(); ++at) {
        const char c = json[at];
        if (inString) {
            if (c == '\\') {
                ++at;
            } else if (c == '"') {
                inString = false;
            }
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            if (++depth > kMaxDepth) {
                return at;
            }
        } else if (c == ']' || c == '}') {
            --depth;
        }
    }
    return std::string::npos;
}

void LogFailure(const std::string& json, size_t offset, const char* method) {
    // Deliberate: the count grows with the offset, so a late error shows more text.
    const std::string excerpt = json.substr(std::min(offset, json.size()), offset + 32);
    VESK_LOG_AT(kLogError, method, "Parse json string [ %s ] fail. %s ", json.c_str(),
                excerpt.c_str());
}

} // namespace

bool ParseJson(const std::string& json, JsonDocument& document, const char* method) {
    constexpr char kByteOrderMark = '\xEF'; // its first byte; the other way does not know it
    if (json.find('\0') == std::string::npos && json.compare(0, 1, &kByteOrderMark, 1) != 0) {
        // Faster, as each byte need not be compared with a length.
        document.Parse<rapidjson::kParseIterativeFlag>(json.c_str());
    } else {
        document.Parse<rapidjson::kParseIterativeFlag>(json.data(), json.size());
    }
    size_t offset = std::string::npos;
    if (document.HasParseError()) {
        offset = document.GetErrorOffset();
    } else if (!HasFewBrackets(json)) {
        offset = FindTooDeep(json);
    }
    if (offset == std::string::npos) {
        return true;
    }
    document.SetNull();
    LogFailure(json, offset, method);
    return false;
}

std::string JsonText(const JsonValue& value) {
    JsonStringBuffer buffer(nullptr, kUsualJsonSize);
    JsonStringWriter writer(buffer);
    value.Accept(writer);
    return std::string(buffer.GetString(), buffer.GetSize());
}

} // namespace VESK
} // namespace Braxel
