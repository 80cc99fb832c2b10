#include "server/json.h"

#include <charconv>

namespace vesk::backend {

namespace {

constexpr size_t kMaxQuoted = 120;

} // namespace

void appendElement(std::string& array, std::string_view json) {
    array += array.size() > 1 ? "," : "";
    array += json;
}

std::string memberOf(const JsonMembers& members, const char* name) {
    const auto member = members.find(name);
    return member == members.end() ? std::string() : member->second;
}

std::optional<long long> numberOf(const std::string& text, long long min, long long max) {
    long long number = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    const bool isGood =
        result.ec == std::errc() && result.ptr == end && number >= min && number <= max;
    return isGood ? std::optional<long long>(number) : std::nullopt;
}

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
                   inQuotes(name) + " was expected";
        }
        ++index;
        if (textOf(member->name) != name) {
            return "member " + std::to_string(index) + " of " + where + " is " +
                   inQuotes(textOf(member->name)) + " where " + inQuotes(name) + " was expected";
        }
        ++member;
    }
    if (member != object.MemberEnd()) {
        return where + " has the member " + inQuotes(textOf(member->name)) + " after its last one";
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

std::string inQuotes(std::string_view text) {
    std::string result = "'";
    result += text.substr(0, kMaxQuoted);
    result += text.size() > kMaxQuoted ? "...'" : "'";
    return result;
}

} // namespace vesk::backend
