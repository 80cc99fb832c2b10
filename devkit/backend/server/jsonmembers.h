#ifndef VESK_DEVKIT_BACKEND_SERVER_JSONMEMBERS_H
#define VESK_DEVKIT_BACKEND_SERVER_JSONMEMBERS_H

#include <initializer_list>
#include <rapidjson/document.h>
#include <string>

namespace vesk::backend {

/// Checks that the object has exactly these members, in this order.
/// @param where how a message calls the object
/// @return an empty text, or what is wrong.
std::string checkMembers(const rapidjson::Value& object, const std::string& where,
                         std::initializer_list<const char*> names);

/// The bytes of a string value; `value` must be a string.
std::string textOf(const rapidjson::Value& value);

/// "a string", "an object" and so on, for messages.
std::string kindOf(const rapidjson::Value& value);

} // namespace vesk::backend

#endif
