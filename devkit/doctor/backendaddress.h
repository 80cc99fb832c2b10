#ifndef VESK_DEVKIT_DOCTOR_BACKENDADDRESS_H
#define VESK_DEVKIT_DOCTOR_BACKENDADDRESS_H

#include <string>

namespace vesk::doctor {

/// The parts of an address like https://login.example.com:8443.
class BackendAddress {
public:
    explicit BackendAddress(const std::string& text);

    bool isValid() const { return mValid; }
    bool isSecure() const { return mScheme == "https"; }
    bool hasPath() const { return mHasPath; }
    /// Whether it is this computer itself.
    bool isLocal() const;
    const std::string& host() const { return mHost; }
    const std::string& port() const { return mPort; }

    /// The address in quotes, without a user and a password.
    const std::string& shown() const { return mShown; }

private:
    std::string mScheme; ///< in lower case, whatever the text has
    std::string mHost;
    std::string mPort; ///< the scheme's own when the text has none
    std::string mShown;
    bool mHasPath = false;
    bool mValid = false;
};

} // namespace vesk::doctor

#endif
