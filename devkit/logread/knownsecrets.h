#ifndef VESK_DEVKIT_LOGREAD_KNOWNSECRETS_H
#define VESK_DEVKIT_LOGREAD_KNOWNSECRETS_H

#include <set>
#include <string>
#include <string_view>

namespace vesk::logread {

/// Secrets that were seen under their names.
constexpr std::string_view kMask = "***";

/// Finds a secret again where no name stands before it.
class KnownSecrets {
public:
    /// Remembers the words of a secret that are long enough to be nothing else.
    void learn(std::string_view secret);
    /// Masks each word that is known.
    std::string mask(std::string_view text) const;

private:
    std::set<std::string, std::less<>> mWords;
};

} // namespace vesk::logread

#endif
