#ifndef VESK_BENCH_PLAINREQUEST_H
#define VESK_BENCH_PLAINREQUEST_H

#include <functional>
#include <string>
#include <vector>

namespace vesk::bench {

/// One POST by plain libcurl with the options that the SDK sets, and nothing around it: what a
/// request of the SDK stands beside.
struct PlainRequest {
    std::string url;
    std::string body;
    std::string caFile;
    void* share = nullptr; ///< of libcurl, for what the requests have in common; not across threads

    /// With a handle of its own, on the calling thread. Ends the program when the answer is not
    /// HTTP 200: there is nothing to compare then.
    void post() const;
};

/// @p requests with TLS sessions shared among them. What they share stays for good.
std::vector<PlainRequest> sharing(std::vector<PlainRequest> requests);

/// Whether the address is one of HTTPS.
bool isSecure(const std::string& url);

/// Starts a detached thread for @p work.
void onNewThread(std::function<void()> work);

} // namespace vesk::bench

#endif
