#ifndef VESK_DEVKIT_LOGREAD_REDACTOR_H
#define VESK_DEVKIT_LOGREAD_REDACTOR_H

#include <set>
#include <string>
#include <string_view>

namespace vesk::logread {

/// What stands in a secret's place.
constexpr std::string_view kMask = "***";

/// Finds a secret that was seen under its name again where no name stands before it.
class KnownSecrets {
public:
    /// Remembers the words of a secret that are long enough to be nothing else.
    void learn(std::string_view secret);
    /// Masks each word that is known.
    std::string mask(std::string_view text) const;

private:
    std::set<std::string, std::less<>> mWords;
};

/// Masks the values of secret names in every notation that the product logs: JSON, also as text
/// inside JSON; addresses; settings; "name:value" in a sentence. Works on texts that break off
/// anywhere, so nothing is parsed. In doubt it masks more. Empty values stay empty.
class Redactor {
public:
    /// The message with "***" in place of each secret, and with characters that JSON wrote as codes
    /// as themselves.
    std::string redact(std::string_view message);

private:
    size_t redactName(size_t at);
    size_t maskJsonValue(size_t at);
    size_t maskValueOfKey(size_t at);
    size_t mask(size_t begin, size_t end);
    bool isSecret(std::string_view name) const;

    KnownSecrets mKnown;
    std::string_view mText;
    std::string mOut;
    bool mQrCode = false;
};

} // namespace vesk::logread

#endif
