#ifndef VESK_TESTS_SUPPORT_BACKENDCONTROL_H
#define VESK_TESTS_SUPPORT_BACKENDCONTROL_H

#include <string>
#include <vector>

namespace vesk::test {

/// What the dev backend is to do with the next request to @p path.
struct Answer {
    std::string path;
    std::string body;
    int status = 200;
    int delayMs = 0;
    std::string action = "answer"; ///< or "reset", "cut", "hang", "redirect"
    std::string location = "";     ///< where a redirect leads to
};

/// A request as the dev backend received and judged it.
struct Request {
    std::string path;
    std::string query;
    std::string body;
    std::string verdict; ///< "ok", or what is wrong
};

/// The test's side of the dev backend's control port.
class BackendControl {
public:
    explicit BackendControl(std::string url) : mUrl(std::move(url)) {}

    void next(const Answer& answer);

    /// The requests to @p path that have come until now, oldest first.
    std::vector<Request> requests(const std::string& path);

    /// Waits until there are @p count requests to @p path and returns the last one.
    Request waitForRequest(const std::string& path, size_t count = 1);

private:
    std::string call(const std::string& path, const std::string* postBody);

    std::string mUrl;
};

} // namespace vesk::test

#endif
