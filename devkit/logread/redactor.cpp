#include "redactor.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "common/text.h"

namespace vesk::logread {

namespace {

bool isNameCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

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

/// Whether a member, setting or label of this name holds a credential, or says who the player is.
/// Case and underscores do not count: "openID" is "open_id".
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

constexpr size_t kShortestWord = 8;
constexpr size_t kMostWords = 10000;
// A sequence id is no secret, but may stand in a text that is masked as a whole.
constexpr auto kDashesOfSequenceId = 7;

bool isWordCharacter(char c) {
    return isNameCharacter(c) || c == '-';
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

// What follows these is a secret to its end. The text that a game passes to a login may hold
// anything, and so may the piece of an answer at which the reading of JSON gave up.
constexpr std::array<std::string_view, 8> kSecretRest = {"with data:",
                                                         "Read file success! Content:\n",
                                                         "User Info:",
                                                         "Get Steam ID:",
                                                         "Get Steam ID from SDK:",
                                                         "Get generate serial number:",
                                                         "extraJson:",
                                                         "] fail. "};

// The labels that may follow a secret in a sentence. Anything else belongs to the secret.
constexpr std::array<std::string_view, 11> kNextLabels = {
    "openid:", "token:", "ticket:", "sessionkey:", "ctt_timeout:",   "ctk:",
    "id:",     "state:", "size:",   "preCode:",    "result message:"};

// What follows a member that the JSON writer logs.
constexpr std::string_view kTypeOfMember = ", type";

size_t skip(std::string_view text, size_t at, std::string_view characters) {
    return std::min(text.find_first_not_of(characters, at), text.size());
}

size_t endOfName(std::string_view text, size_t at) {
    while (at < text.size() && isNameCharacter(text[at])) {
        ++at;
    }
    return at;
}

/// Behind a quote, escaped as often as may be, that stands at `at`; `at` itself when none does.
size_t behindQuote(std::string_view text, size_t at) {
    const size_t quote = skip(text, at, "\\");
    return quote < text.size() && text[quote] == '"' ? quote + 1 : at;
}

/// Where the quote stands that closes a text begun by a quote with this many backslashes. They
/// count as the quote's own.
size_t closingQuote(std::string_view text, size_t at, size_t backslashes) {
    for (size_t quote = text.find('"', at); quote != std::string_view::npos;
         quote = text.find('"', quote + 1)) {
        size_t begin = quote;
        while (begin > at && text[begin - 1] == '\\') {
            --begin;
        }
        const size_t run = quote - begin;
        if (run <= backslashes) {
            return begin;
        }
        if (backslashes == 0 && run % 2 == 0) {
            return quote;
        }
    }
    return text.size();
}

bool startsWithLabel(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(", "), text.size()));
    return std::any_of(kNextLabels.begin(), kNextLabels.end(), [&](std::string_view label) {
        return text.substr(0, label.size()) == label;
    });
}

/// A setting's value reaches to the end of its line, that in an address to the next parameter.
size_t endOfAddressValue(std::string_view text, size_t at, bool isSetting) {
    const size_t end = std::min(text.find_first_of(isSetting ? "\n" : "& \n\"", at), text.size());
    return !isSetting && end > at && text[end - 1] == ',' ? end - 1 : end;
}

/// A value in a sentence reaches to the next label, or to the end.
size_t endOfLabelled(std::string_view text, size_t at) {
    size_t end = text.find_first_of(", ", at);
    while (end < text.size() && !startsWithLabel(text.substr(end))) {
        end = text.find_first_of(", ", end + 1);
    }
    return std::min(end, text.size());
}

size_t findControl(std::string_view text) {
    const auto found = std::find_if(text.begin(), text.end(), [](char c) {
        return static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\r' && c != '\t';
    });
    return static_cast<size_t>(found - text.begin());
}

bool isSettingName(std::string_view name) {
    return std::none_of(name.begin(), name.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

// Six levels of JSON inside JSON. Each doubles the backslashes, so there has to be an end.
constexpr size_t kMostBackslashes = 64;
constexpr size_t kLengthOfCode = 5;

/// The character of a code "u0065" that begins a text; 0 when none does or it is not printable.
char codedCharacter(std::string_view text) {
    if (text.substr(0, 3) != "u00" || text.size() < kLengthOfCode) {
        return 0;
    }
    unsigned code = 0;
    const char* const end = text.data() + kLengthOfCode;
    if (std::from_chars(text.data() + 3, end, code, 16).ptr != end) {
        return 0;
    }
    return code >= 0x20 && code < 0x7F ? static_cast<char>(code) : '\0';
}

/// How many backslashes say the same as this many before a character's code, besides the character;
/// a backslash is one of them.
size_t plainBackslashes(char c, size_t beforeCode) {
    const size_t own = c == '"' ? 1 : 0;
    if (beforeCode % 2 == 0) {
        // The code belongs to a text inside this one, where half of them are left.
        return 2 * plainBackslashes(c, beforeCode / 2) + own;
    }
    return beforeCode - 1 + (c == '\\' ? 2 : own);
}

/// The text with each "\u0065" of a printable ASCII character as the character itself, so that
/// names and quotes can be found by how they look. A quote or backslash keeps the plain escape that
/// it needs, also in JSON that is a text inside JSON, to any depth that makes sense.
std::string withoutJsonEscapes(std::string_view text) {
    if (text.find("\\u00") == std::string_view::npos) {
        return std::string(text);
    }
    std::string out;
    size_t backslashes = 0; // at the end of out
    for (size_t at = 0; at < text.size(); ++at) {
        const char c = codedCharacter(text.substr(at));
        if (c == 0 || backslashes == 0 || backslashes > kMostBackslashes) {
            out.push_back(text[at]);
            backslashes = text[at] == '\\' ? backslashes + 1 : 0;
            continue;
        }
        out.resize(out.size() - backslashes);
        backslashes = plainBackslashes(c, backslashes);
        out.append(backslashes, '\\');
        if (c != '\\') {
            out.push_back(c);
            backslashes = 0;
        }
        at += kLengthOfCode - 1;
    }
    return out;
}

} // namespace

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

std::string Redactor::redact(std::string_view written) {
    const std::string message = withoutJsonEscapes(written);
    mOut.clear();
    const auto holds = [&](std::string_view part) {
        return message.find(part) != std::string::npos;
    };
    mQrCode = holds("qrcode") || holds("Qrcode") || holds("QRCode") || holds("qrCode");
    // Text that is damaged, and so still scrambled in part, shows by its control characters. No
    // name would be found in it, but anybody could undo the rest.
    size_t rest = std::min(findControl(message), message.size());
    for (const std::string_view label : kSecretRest) {
        const size_t at = message.find(label);
        rest = at == std::string::npos ? rest : std::min(rest, at + label.size());
    }
    const std::string_view whole = message;
    mText = whole.substr(0, rest);
    for (size_t at = 0; at < mText.size();) {
        const bool isName =
            isNameCharacter(mText[at]) && (at == 0 || !isNameCharacter(mText[at - 1]));
        if (isName) {
            at = redactName(at);
        } else {
            mOut.push_back(mText[at++]);
        }
    }
    mText = whole;
    mask(rest, message.size());
    return mKnown.mask(mOut);
}

bool Redactor::isSecret(std::string_view name) const {
    // A code that is on the screen lets in whoever scans it.
    return isSecretName(name) || (mQrCode && (name == "url" || name == "id"));
}

/// Copies the name that begins at `at` and, when it is a secret's, masks its value.
/// @return behind what is done
size_t Redactor::redactName(size_t at) {
    const size_t end = endOfName(mText, at);
    const std::string_view name = mText.substr(at, end - at);
    const size_t quote = behindQuote(mText, end);
    // JSON has line ends wherever it has blanks; a setting ends with its line.
    const std::string_view blanks = quote != end ? " \t\r\n" : " ";
    const size_t sign = skip(mText, quote, blanks);
    const bool hasValue = sign < mText.size() && (mText[sign] == ':' || mText[sign] == '=');
    if (!hasValue || (name != "key" && !isSecret(name))) {
        mOut.append(name);
        return end;
    }
    const size_t value = skip(mText, sign + 1, blanks);
    mOut.append(mText.substr(at, value - at));
    if (quote != end && mText[sign] == ':') {
        return name == "key" ? value : maskJsonValue(value);
    }
    if (name == "key") {
        return maskValueOfKey(value);
    }
    return mask(value, mText[sign] == ':' ? endOfLabelled(mText, value)
                                          : endOfAddressValue(mText, value, isSettingName(name)));
}

size_t Redactor::maskJsonValue(size_t at) {
    const size_t begin = behindQuote(mText, at);
    if (begin != at) {
        mOut.append(mText.substr(at, begin - at));
        return mask(begin, closingQuote(mText, begin, begin - at - 1));
    }
    const bool isNested = at < mText.size() && (mText[at] == '{' || mText[at] == '[');
    const size_t end = mText.find_first_of(",}] \n\\\"", at);
    return mask(at, isNested ? mText.size() : std::min(end, mText.size()));
}

/// "key:NAME value:...": the name is the value of another name.
size_t Redactor::maskValueOfKey(size_t at) {
    const size_t end = endOfName(mText, at);
    const size_t sign = mText.find_first_of(":=", end);
    mOut.append(mText.substr(at, end - at));
    if (sign == std::string_view::npos || !isSecret(mText.substr(at, end - at))) {
        return end;
    }
    const size_t value = skip(mText, sign + 1, " ");
    mOut.append(mText.substr(end, value - end));
    const bool isEmpty = mText.substr(value, kTypeOfMember.size()) == kTypeOfMember;
    return isEmpty ? value : mask(value, mText.size());
}

size_t Redactor::mask(size_t begin, size_t end) {
    if (begin < end) {
        mKnown.learn(mText.substr(begin, end - begin));
        mOut.append(kMask);
    }
    return end;
}

} // namespace vesk::logread
