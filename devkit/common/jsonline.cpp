#include "jsonline.h"

#include <cstdio>
#include <rapidjson/document.h>

#include "text.h"

namespace vesk::devkit {

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
