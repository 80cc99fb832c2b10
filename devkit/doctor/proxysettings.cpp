#include "proxysettings.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string>

namespace vesk::doctor {

namespace {

struct Variable {
    std::string name;
    std::string value;
};

/// The first of these that is set and not empty.
Variable firstOf(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        const char* value = std::getenv(name.c_str());
        if (value != nullptr && *value != '\0') {
            return {name, value};
        }
    }
    return {};
}

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

/// Whether the list of hosts that are reached directly names this one or a domain above it.
bool isExcepted(const std::string& list, const std::string& host) {
    const std::string wanted = lower(host);
    size_t begin = 0;
    while (begin < list.size()) {
        const size_t end = std::min(list.find_first_of(", ", begin), list.size());
        std::string entry = lower(list.substr(begin, end - begin));
        begin = end + 1;
        if (entry == "*") {
            return true;
        }
        entry.erase(0, entry.find_first_not_of('.'));
        const bool domain =
            !entry.empty() && wanted.size() > entry.size() &&
            wanted.compare(wanted.size() - entry.size() - 1, std::string::npos, "." + entry) == 0;
        if (!entry.empty() && (domain || wanted == entry)) {
            return true;
        }
    }
    return false;
}

} // namespace

Findings checkProxy(const BackendAddress& address) {
    // HTTP_PROXY in capitals is not looked at: a web server could have set it from a request.
    const Variable proxy = address.isSecure()
                               ? firstOf({"https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"})
                               : firstOf({"http_proxy", "all_proxy", "ALL_PROXY"});
    if (proxy.name.empty()) {
        return {ok("proxy", "none is set in the environment")};
    }
    const std::string shown = proxy.name + " is " + BackendAddress(proxy.value).shown();
    const Variable except = firstOf({"no_proxy", "NO_PROXY"});
    if (isExcepted(except.value, address.host())) {
        return {ok("proxy", shown + ", but " + except.name + " excepts " + address.host())};
    }
    return {warning("proxy", shown + ": requests go through it",
                    "If that is not wanted, remove the variable, or add " + address.host() +
                        " to no_proxy.")};
}

} // namespace vesk::doctor
