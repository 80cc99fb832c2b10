#include "secretnames.h"

#include <algorithm>
#include <array>
#include <string>

namespace vesk::logread {

namespace {

constexpr std::array<std::string_view, 16> kParts = {
    "token",  "ticket",  "secret", "passw",   "pwd",      "cookie",  "authorization", "credential",
    "openid", "steamid", "qrcode", "precode", "username", "picture", "birthdate",     "devinfo"};
constexpr std::array<std::string_view, 7> kNames = {"ctk",       "ctt", "sig", "sign",
                                                    "signature", "uid", "pass"};
// "token_expire_time" is a time.
constexpr std::array<std::string_view, 3> kHarmless = {"expire", "timeout", "length"};

std::string plainForm(std::string_view name) {
    std::string plain;
    for (const char c : name) {
        if (c >= 'A' && c <= 'Z') {
            plain.push_back(static_cast<char>(c - 'A' + 'a'));
        } else if (c != '_') {
            plain.push_back(c);
        }
    }
    return plain;
}

} // namespace

bool isSecretName(std::string_view name) {
    const std::string plain = plainForm(name);
    const auto holds = [&](std::string_view part) { return plain.find(part) != std::string::npos; };
    if (std::any_of(kHarmless.begin(), kHarmless.end(), holds)) {
        return false;
    }
    const bool isKey = plain.size() > 3 && plain.compare(plain.size() - 3, 3, "key") == 0;
    return isKey || std::any_of(kParts.begin(), kParts.end(), holds) ||
           std::find(kNames.begin(), kNames.end(), plain) != kNames.end();
}

} // namespace vesk::logread
