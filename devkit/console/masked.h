#ifndef VESK_DEVKIT_CONSOLE_MASKED_H
#define VESK_DEVKIT_CONSOLE_MASKED_H

#include <string>

/// What may be shown of a secret: its first four characters and its length. Nothing but the length
/// of one that is so short that four would be half of it.
inline std::string masked(const std::string& secret) {
    constexpr std::string::size_type kShown = 4;
    const std::string begin = secret.size() > 2 * kShown ? secret.substr(0, kShown) : "";
    return begin + "...(" + std::to_string(secret.size()) + ")";
}

#endif
