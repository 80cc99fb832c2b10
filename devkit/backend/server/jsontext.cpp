#include "server/jsontext.h"

#include <rapidjson/encodings.h>
#include <rapidjson/memorystream.h>

namespace vesk::backend {

namespace {

constexpr size_t kMaxQuoted = 120;
constexpr char kReplacement[] = "\xEF\xBF\xBD";

} // namespace

std::string toUtf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    rapidjson::MemoryStream in(text.data(), text.size());
    rapidjson::StringBuffer character;
    while (in.Tell() < text.size()) {
        const size_t start = in.Tell();
        character.Clear();
        if (rapidjson::UTF8<>::Validate(in, character)) {
            result.append(character.GetString(), character.GetSize());
            continue;
        }
        result += kReplacement;
        in.src_ = in.begin_ + start + 1;
    }
    return result;
}

void writeText(JsonWriter& writer, std::string_view text) {
    const std::string utf8 = toUtf8(text);
    writer.String(utf8.data(), static_cast<rapidjson::SizeType>(utf8.size()));
}

void writeMember(JsonWriter& writer, std::string_view name, std::string_view text) {
    writeText(writer, name);
    writeText(writer, text);
}

std::string quoted(std::string_view text) {
    std::string result = "'";
    result += text.substr(0, kMaxQuoted);
    result += text.size() > kMaxQuoted ? "...'" : "'";
    return result;
}

} // namespace vesk::backend
