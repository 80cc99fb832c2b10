#ifndef VESK_TESTS_SUPPORT_BACKENDCONTROL_H
#define VESK_TESTS_SUPPORT_BACKENDCONTROL_H

#include <optional>
#include <string>
#include <vector>

namespace vesk::test {

/// An answer of the dev backend's control port.
struct ControlAnswer {
    long status = 0;
    std::string body;
};

/// Asks the control port: a GET, or a POST when there is a body. Throws when nobody answers.
/// @param headers further ones, as "Name: value"
ControlAnswer callControlPort(const std::string& url, const std::string* body,
                              const std::vector<std::string>& headers = {});

/// What the dev backend is to do with the next request to @p path.
struct Answer {
    std::string path;
    std::string body;
    int status = 200;
    int delayMs = 0;
    std::string action = "answer"; ///< or "echo", "reset", "cut", "hang", "redirect"
    std::string location{};        ///< where a redirect leads to
    std::string more{};            ///< further members of the script: JSON with a leading comma
};

/// A request as the dev backend received and judged it.
struct Request {
    std::string path;
    std::string query;
    std::string body;
    std::string headers; ///< as JSON
    std::string verdict; ///< "ok", or what is wrong
};

/// The test's side of the dev backend's control port.
class BackendControl {
public:
    explicit BackendControl(std::string url) : mUrl(std::move(url)) {}

    void next(const Answer& answer);

    /// Forgets requests and scripted answers.
    void clear();

    /// The requests to @p path that have come until now, oldest first.
    std::vector<Request> requests(const std::string& path);

    /// Waits until there are @p count requests to @p path and returns the last one.
    Request waitForRequest(const std::string& path, size_t count = 1);

    /// The certificate of the handshakes from now on: "good", "expired" and so on.
    void showCertificate(const std::string& kind);
    /// What else it does in handshakes, as JSON for its /tls; empty: as before.
    void conduct(const std::string& json);
    /// How many handshakes until now have resumed a session.
    size_t resumedSessions();

    /// A way to the backend that breaks as breakLine() says.
    std::string lineUrl();
    /// How many connections came that way until now.
    size_t lineConnections();
    /// @param after how many bytes @p from "client" or "server" come through before
    void breakLine(const std::string& action, size_t after = 0, const std::string& from = "client");
    /// Who connects is sent @p head, and then @p wave without an end.
    void floodLine(const std::string& head, const std::string& wave);

private:
    std::string call(const std::string& path, const std::optional<std::string>& body = {});

    std::string mUrl;
};

} // namespace vesk::test

#endif
