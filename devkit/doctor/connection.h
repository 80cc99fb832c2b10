#ifndef VESK_DEVKIT_DOCTOR_CONNECTION_H
#define VESK_DEVKIT_DOCTOR_CONNECTION_H

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vesk::doctor {

/// What a person wants to know of an X.509 certificate.
struct Certificate {
    std::string subject; ///< the common name, or the organisation when there is none
    std::string issuer;
    int64_t begin = 0; ///< Unix seconds
    int64_t end = 0;
};

/// The certificate of one PEM block, read by the system's library; nothing when it is none.
std::optional<Certificate> readCertificate(const std::string& block);

/// "2026-11-24", the day in UTC of a time in Unix seconds.
std::string dayText(int64_t seconds);

/// What stands in a PEM file.
struct PemFile {
    explicit PemFile(const std::string& text = {});

    std::vector<Certificate> certificates;
    size_t broken = 0;       ///< blocks of certificates that cannot be read
    bool privateKey = false; ///< there is a block of a private key, too
};

/// The parts of an address like https://login.example.com:8443.
struct BackendAddress {
    explicit BackendAddress(const std::string& text);

    std::string scheme; ///< in lower case, whatever the text has
    std::string host;
    std::string port;  ///< the scheme's own when the text has none
    std::string shown; ///< the address in quotes, without a user and a password
    bool hasPath = false;
    bool isValid = false;

    bool isSecure() const { return scheme == "https"; }
    /// Whether it is this computer itself.
    bool isLocal() const;
};

/// How far a request to the backend has come, and what was seen on the way.
struct Connection {
    enum class Step { Name, Connect, Secure, Answer, Done };

    Step reached = Step::Done; ///< Done, or the step that has failed
    std::string proxy;         ///< its address when the environment names one and libcurl takes it
    std::string proxyVariable; ///< the name of the variable that has set it
    int code = 0;              ///< libcurl's; the game sees it as thirdCode
    std::string error;         ///< libcurl's words

    std::string address; ///< the numeric one
    long milliseconds = 0;
    long status = 0;
    std::string location;
    bool simulated = false;                ///< it was the dev backend that has answered
    std::vector<Certificate> certificates; ///< the backend's, its own first
    std::optional<int64_t> backendTime;    ///< what the backend's clock says, Unix seconds
    int64_t ownTime = 0;                   ///< what this computer's said then
};

/// Goes to the backend as the SDK does, with the same certificates, and asks for the head of its
/// first page: nothing of the player or the game is sent.
/// @param certificates the file of what is trusted.
Connection tryConnection(const std::string& url, const std::filesystem::path& certificates);

} // namespace vesk::doctor

#endif
