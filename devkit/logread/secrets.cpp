#include <algorithm>
#include <array>

#include "common/text.h"
#include "redactor.h"

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

constexpr size_t kShortestWord = 8;
constexpr size_t kMostWords = 10000;
// A sequence id is no secret, but may stand in a text that is masked as a whole.
constexpr auto kDashesOfSequenceId = 7;

bool isWordCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '_';
}

/// Calls take() for each word and for what stands between words, in their order.
template <typename Take>
void forEachPiece(std::string_view text, const Take& take) {
    while (!text.empty()) {
        const bool isWord = isWordCharacter(text.front());
        const auto end = std::find_if(text.begin(), text.end(),
                                      [&](char c) { return isWordCharacter(c) != isWord; });
        const auto length = static_cast<size_t>(end - text.begin());
        take(text.substr(0, length));
        text.remove_prefix(length);
    }
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

void KnownSecrets::learn(std::string_view secret) {
    forEachPiece(secret, [this](std::string_view word) {
        // A word without a digit may be a word of the language.
        if (word.size() >= kShortestWord && mWords.size() < kMostWords &&
            std::any_of(word.begin(), word.end(), devkit::isDigit) &&
            std::count(word.begin(), word.end(), '-') != kDashesOfSequenceId) {
            mWords.emplace(word);
        }
    });
}

std::string KnownSecrets::mask(std::string_view text) const {
    std::string out;
    forEachPiece(text, [&](std::string_view word) {
        const bool known = word.size() >= kShortestWord && mWords.find(word) != mWords.end();
        out.append(known ? kMask : word);
    });
    return out;
}

} // namespace vesk::logread
