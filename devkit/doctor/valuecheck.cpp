#include <cstdlib>

#include "backendaddress.h"
#include "knownkeys.h"

namespace vesk::doctor {

namespace {

constexpr const char* kDigits = "0123456789";

Finding good(const char* name, const std::string& found) {
    return ok(name, found, name + (" " + found));
}

Finding checkAddress(const char* name, const std::string& value) {
    const BackendAddress address(value);
    const std::string& shown = address.shown();
    if (!address.isValid()) {
        return problem(name, shown + " is no address of a backend",
                       "Write scheme, host and, where it is not the usual one, port: "
                       "https://login.example.com");
    }
    if (value.back() == '/') {
        return problem(name, shown + " ends with a slash",
                       "Remove the slash: requests would go to \"//v2/...\".");
    }
    if (address.hasPath()) {
        return warning(name, shown + " has a path",
                       "Leave it out, unless the backend really serves it: \"/v2/auth/...\" is "
                       "appended.");
    }
    if (!address.isSecure() && !address.isLocal()) {
        return warning(name, shown + " is not encrypted",
                       "Use https:// for everything but development: the player's credential "
                       "goes in clear text.");
    }
    return good(name, shown);
}

Finding checkText(const char* name, const std::string& value) {
    const std::string plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.";
    if (value.find_first_not_of(plain) != std::string::npos) {
        return warning(name, "\"" + value + "\" holds unusual characters",
                       "Compare it with what the other side has given you.");
    }
    return good(name, value);
}

Finding checkSeconds(const char* name, const std::string& value) {
    const long long seconds = std::strtoll(value.c_str(), nullptr, 10);
    if (seconds <= 0) {
        return problem(name, "counts as " + std::to_string(seconds) + " seconds",
                       "Write a number of seconds, or remove the line to get 15: now every "
                       "request that waits is over at once.");
    }
    const std::string found = std::to_string(seconds) + " seconds";
    if (value.find_first_not_of(kDigits) != std::string::npos || value.size() > 6) {
        return warning(name, "\"" + value + "\" counts as " + found,
                       "Write nothing but the number of seconds.");
    }
    return good(name, found);
}

Finding checkAppNumber(const char* name, const std::string& value) {
    if (value.find_first_not_of(kDigits) != std::string::npos) {
        return problem(name, "\"" + value + "\" is no number",
                       "Write the game's number in Steam, digits only.");
    }
    return good(name, value);
}

Finding checkSwitch(const KnownKey& key, const std::string& value) {
    const size_t digit = value.find_first_not_of('0');
    const bool on = digit != std::string::npos && value.substr(digit) == "1";
    if (!on && digit != std::string::npos) {
        return warning(key.name, "\"" + value + "\" counts as off",
                       "Write 1 for on or 0 for off: nothing else is understood.");
    }
    if (on && key.type == KeyType::LogSwitch) {
        return warning(key.name, "on: the log grows faster and shows more",
                       "Write 0 in what players get.");
    }
    return good(key.name, on ? "on" : "off");
}

} // namespace

Finding checkValue(const KnownKey& key, const std::string& value) {
    switch (key.type) {
    case KeyType::Address:
        return checkAddress(key.name, value);
    case KeyType::Text:
        return checkText(key.name, value);
    case KeyType::Seconds:
        return checkSeconds(key.name, value);
    case KeyType::AppNumber:
        return checkAppNumber(key.name, value);
    case KeyType::Switch:
    case KeyType::LogSwitch:
        return checkSwitch(key, value);
    case KeyType::Secret:
        break;
    }
    return ok(key.name, "is set, characters: " + std::to_string(value.size()), key.name);
}

} // namespace vesk::doctor
