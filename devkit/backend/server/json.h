#ifndef VESK_DEVKIT_BACKEND_SERVER_JSON_H
#define VESK_DEVKIT_BACKEND_SERVER_JSON_H

#include <initializer_list>
#include <optional>
#include <rapidjson/document.h>
#include <string>
#include <string_view>

#include "common/jsonline.h"

namespace vesk::backend {

using devkit::JsonLine;
using devkit::JsonMembers;

/// Adds a value to a JSON array that has been begun with '['.
void appendElement(std::string& array, std::string_view json);

/// A member's text; empty when it is missing.
std::string memberOf(const JsonMembers& members, const char* name);

/// A number in decimal digits; nothing when it is none, or not from @p min to @p max.
std::optional<long long> numberOf(const std::string& text, long long min, long long max);

/// Checks that the object has exactly these members, in this order.
/// @param where how a message calls the object
/// @return an empty text, or what is wrong.
std::string checkMembers(const rapidjson::Value& object, const std::string& where,
                         std::initializer_list<const char*> names);

/// The bytes of a string value; `value` must be a string.
std::string textOf(const rapidjson::Value& value);

/// "a string", "an object" and so on, for messages.
std::string kindOf(const rapidjson::Value& value);

/// The text in single quotes, cut to a length that a message can carry.
std::string inQuotes(std::string_view text);

} // namespace vesk::backend

#endif
