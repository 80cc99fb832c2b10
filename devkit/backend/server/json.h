#ifndef VESK_DEVKIT_BACKEND_SERVER_JSON_H
#define VESK_DEVKIT_BACKEND_SERVER_JSON_H

#include <optional>
#include <rapidjson/document.h>
#include <string>
#include <string_view>

#include "common/text.h"

namespace vesk::backend {

using devkit::JsonLine;

/// Adds a value to a JSON array that has been begun with '['.
void appendElement(std::string& array, std::string_view json);

/// A number in decimal digits; nothing when it is none, or not from @p min to @p max.
std::optional<long long> numberOf(const std::string& text, long long min, long long max);

/// The bytes of a string value; `value` must be a string.
std::string textOf(const rapidjson::Value& value);

/// "a string", "an object" and so on, for messages.
std::string kindOf(const rapidjson::Value& value);

/// The text in single quotes, cut to a length that a message can carry.
std::string inQuotes(std::string_view text);

/// The bytes as lower-case hexadecimal digits.
std::string toHex(std::string_view bytes);

/// Fresh random bytes as hexadecimal digits.
std::string randomHex(size_t byteCount);

} // namespace vesk::backend

#endif
