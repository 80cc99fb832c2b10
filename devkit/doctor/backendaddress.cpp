#include "backendaddress.h"

#include <algorithm>
#include <cctype>

namespace vesk::doctor {

namespace {

bool isPort(const std::string& text) {
    return !text.empty() && text.size() <= 5 &&
           text.find_first_not_of("0123456789") == std::string::npos && std::stoi(text) <= 65535;
}

bool isHost(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char c) {
        return std::isgraph(c) != 0 &&
               std::string("\"<>\\^`{|}@").find(static_cast<char>(c)) == std::string::npos;
    });
}

} // namespace

BackendAddress::BackendAddress(const std::string& text) : mText(text) {
    const size_t colon = text.find("://");
    if (colon == std::string::npos) {
        return;
    }
    mScheme = text.substr(0, colon);
    std::transform(mScheme.begin(), mScheme.end(), mScheme.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    std::string rest = text.substr(colon + 3);
    const size_t slash = rest.find_first_of("/?");
    if (slash != std::string::npos) {
        mPath = rest.substr(slash);
        rest.resize(slash);
    }
    const size_t at = rest.rfind('@');
    const bool hasUser = at != std::string::npos;
    if (hasUser) {
        rest = rest.substr(at + 1);
        mText = mScheme + "://***@" + rest + mPath;
    }
    const size_t bracket = rest.find(']'); // of an IPv6 address, which has colons of its own
    const size_t port = rest.find(':', bracket == std::string::npos ? 0 : bracket);
    mHost = rest.substr(0, port);
    mPort = port == std::string::npos ? (isSecure() ? "443" : "80") : rest.substr(port + 1);
    mValid = (mScheme == "https" || mScheme == "http") && isHost(mHost) && isPort(mPort);
}

std::string BackendAddress::shown() const {
    return "\"" + mText + "\"";
}

} // namespace vesk::doctor
