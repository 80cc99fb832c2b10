#ifndef VESK_DEVKIT_BACKEND_SERVER_JSONTEXT_H
#define VESK_DEVKIT_BACKEND_SERVER_JSONTEXT_H

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <string>
#include <string_view>

namespace vesk::backend {

using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;

/// The text with every byte that is not part of a UTF-8 sequence replaced by U+FFFD.
std::string toUtf8(std::string_view text);

/// Writes a string value; bytes that are not UTF-8 are replaced.
void writeText(JsonWriter& writer, std::string_view text);

/// Writes a member name and its string value; bytes that are not UTF-8 are replaced.
void writeMember(JsonWriter& writer, std::string_view name, std::string_view text);

/// The text in single quotes, cut to a length that a message can carry.
std::string quoted(std::string_view text);

} // namespace vesk::backend

#endif
