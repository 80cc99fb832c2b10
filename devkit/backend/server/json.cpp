#include "server/json.h"

#include <charconv>
#include <random>

namespace vesk::backend {

namespace {

constexpr size_t kMaxQuoted = 120;

} // namespace

void appendElement(std::string& array, std::string_view json) {
    array += array.size() > 1 ? "," : "";
    array += json;
}

std::optional<long long> numberOf(const std::string& text, long long min, long long max) {
    long long number = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    const bool isGood =
        result.ec == std::errc() && result.ptr == end && number >= min && number <= max;
    return isGood ? std::optional<long long>(number) : std::nullopt;
}

std::string textOf(const rapidjson::Value& value) {
    return std::string(value.GetString(), value.GetStringLength());
}

std::string kindOf(const rapidjson::Value& value) {
    // In the order of rapidjson::Type.
    static const char* const kKinds[] = {"null",     "a bool",   "a bool",  "an object",
                                         "an array", "a string", "a number"};
    return kKinds[value.GetType()];
}

std::string inQuotes(std::string_view text) {
    std::string result = "'";
    result += text.substr(0, kMaxQuoted);
    result += text.size() > kMaxQuoted ? "...'" : "'";
    return result;
}

std::string toHex(std::string_view bytes) {
    constexpr const char* kDigits = "0123456789abcdef";
    std::string hex;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        hex += kDigits[byte >> 4];
        hex += kDigits[byte & 15];
    }
    return hex;
}

std::string randomHex(size_t byteCount) {
    std::random_device random;
    std::string bytes;
    while (bytes.size() < byteCount) {
        bytes += static_cast<char>(random());
    }
    return toHex(bytes);
}

} // namespace vesk::backend
