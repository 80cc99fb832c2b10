#include "text.h"

#include <algorithm>
#include <cstdio>
#include <rapidjson/document.h>
#include <rapidjson/encodings.h>
#include <rapidjson/memorystream.h>

namespace vesk::devkit {

std::string_view trimmed(std::string_view text) {
    constexpr const char* kBlanks = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    for (size_t at = 0; !text.empty() && at <= text.size();) {
        const size_t end = std::min(text.find(separator, at), text.size());
        parts.emplace_back(text.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

Character firstCharacter(std::string_view text) {
    rapidjson::MemoryStream stream(text.data(), text.size());
    unsigned code = 0;
    if (rapidjson::UTF8<>::Decode(stream, &code)) {
        return {text.substr(0, stream.Tell()), code, true};
    }
    return {text.substr(0, 1), static_cast<unsigned char>(text.front()), false};
}

bool isControl(uint32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x061C || code == 0x200E ||
           code == 0x200F || (code >= 0x2028 && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        result += character.isValid && !isControl(character.code) ? character.bytes : "?";
        text.remove_prefix(character.bytes.size());
    }
    return result;
}

void appendJsonText(std::string& out, std::string_view text) {
    out.push_back('"');
    while (!text.empty()) {
        const char c = text.front();
        if (c >= 0x20 && c < 0x7F && c != '"' && c != '\\') {
            out.push_back(c);
            text.remove_prefix(1);
            continue;
        }
        const Character character = firstCharacter(text);
        if (!character.isValid) {
            out.append("\\ufffd");
        } else if (c == '"' || c == '\\') {
            out.append("\\").append(character.bytes);
        } else if (c == '\n') {
            out.append("\\n");
        } else if (isControl(character.code)) {
            char escape[8] = {};
            std::snprintf(escape, sizeof escape, "\\u%04x", character.code & 0xFFFFU);
            out.append(escape);
        } else {
            out.append(character.bytes);
        }
        text.remove_prefix(character.bytes.size());
    }
    out.push_back('"');
}

JsonLine& JsonLine::add(std::string_view name, std::string_view value) {
    std::string quoted;
    appendJsonText(quoted, value);
    return addRaw(name, quoted);
}

JsonLine& JsonLine::addRaw(std::string_view name, std::string_view json) {
    if (!mMembers.empty()) {
        mMembers += ',';
    }
    appendJsonText(mMembers, name);
    mMembers += ':';
    mMembers += json;
    return *this;
}

std::optional<JsonMembers> readJsonObject(std::string_view text) {
    constexpr unsigned kFlags = rapidjson::kParseIterativeFlag |
                                rapidjson::kParseValidateEncodingFlag |
                                rapidjson::kParseNumbersAsStringsFlag;
    rapidjson::Document document;
    document.Parse<kFlags>(text.data(), text.size());
    if (document.HasParseError() || !document.IsObject()) {
        return std::nullopt;
    }
    const auto textOf = [](const rapidjson::Value& value) {
        return value.IsString() ? std::string(value.GetString(), value.GetStringLength())
               : value.IsBool() ? std::string(value.IsTrue() ? "true" : "false")
                                : std::string();
    };
    JsonMembers members;
    for (const auto& member : document.GetObject()) {
        members.emplace(textOf(member.name), textOf(member.value));
    }
    return members;
}

} // namespace vesk::devkit
