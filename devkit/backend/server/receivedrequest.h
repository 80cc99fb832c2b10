#ifndef VESK_DEVKIT_BACKEND_SERVER_RECEIVEDREQUEST_H
#define VESK_DEVKIT_BACKEND_SERVER_RECEIVEDREQUEST_H

#include <string>
#include <utility>
#include <vector>

namespace vesk::backend {

/// A request byte for byte, nothing decoded.
struct ReceivedRequest {
    std::string method;
    /// Path and query as they stood in the request line.
    std::string target;
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;

    /// The target up to the first '?'.
    std::string path() const;

    /// The target after the first '?', empty when there is none.
    std::string query() const;
};

} // namespace vesk::backend

#endif
