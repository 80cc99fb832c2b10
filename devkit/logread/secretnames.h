#ifndef VESK_DEVKIT_LOGREAD_SECRETNAMES_H
#define VESK_DEVKIT_LOGREAD_SECRETNAMES_H

#include <string_view>

namespace vesk::logread {

/// Whether a member, setting or label of this name holds a credential, or says who the player is.
/// Case and underscores do not count: "openID" is "open_id".
bool isSecretName(std::string_view name);

} // namespace vesk::logread

#endif
