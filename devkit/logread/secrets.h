#ifndef VESK_DEVKIT_LOGREAD_SECRETS_H
#define VESK_DEVKIT_LOGREAD_SECRETS_H

#include <set>
#include <string>
#include <string_view>

namespace vesk::logread {

/// What stands in a secret's place.
constexpr std::string_view kMask = "***";

/// Whether a member, setting or label of this name holds a credential, or says who the player is.
/// Case and underscores do not count: "openID" is "open_id".
bool isSecretName(std::string_view name);

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

} // namespace vesk::logread

#endif
