#include "server/jsonmembers.h"

#include "server/jsontext.h"

namespace vesk::backend {

std::string checkMembers(const rapidjson::Value& object, const std::string& where,
                         std::initializer_list<const char*> names) {
    if (!object.IsObject()) {
        return where + " is " + kindOf(object) + " where an object was expected";
    }
    size_t index = 0;
    auto member = object.MemberBegin();
    for (const char* name : names) {
        if (member == object.MemberEnd()) {
            return where + " ends after " + std::to_string(index) + " members where " +
                   quoted(name) + " was expected";
        }
        ++index;
        if (textOf(member->name) != name) {
            return "member " + std::to_string(index) + " of " + where + " is " +
                   quoted(textOf(member->name)) + " where " + quoted(name) + " was expected";
        }
        ++member;
    }
    if (member != object.MemberEnd()) {
        return where + " has the member " + quoted(textOf(member->name)) + " after its last one";
    }
    return {};
}

std::string textOf(const rapidjson::Value& value) {
    return std::string(value.GetString(), value.GetStringLength());
}

std::string kindOf(const rapidjson::Value& value) {
    switch (value.GetType()) {
    case rapidjson::kNullType:
        return "null";
    case rapidjson::kFalseType:
    case rapidjson::kTrueType:
        return "a bool";
    case rapidjson::kObjectType:
        return "an object";
    case rapidjson::kArrayType:
        return "an array";
    case rapidjson::kStringType:
        return "a string";
    case rapidjson::kNumberType:
        return "a number";
    }
    return "a value";
}

} // namespace vesk::backend
