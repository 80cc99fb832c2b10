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
    bool hasPath() const { return !mPath.empty(); }
    /// In lower case, whatever the text has.
    const std::string& scheme() const { return mScheme; }
    const std::string& host() const { return mHost; }
    const std::string& port() const { return mPort; }

    /// The address without a user and a password.
    std::string shown() const;

private:
    std::string mScheme;
    std::string mHost;
    std::string mPort; ///< the scheme's own when the text has none
    std::string mPath;
    std::string mText;
    bool mValid = false;
};

} // namespace vesk::doctor

#endif
