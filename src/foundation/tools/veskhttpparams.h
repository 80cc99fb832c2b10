#ifndef VESK_FOUNDATION_TOOLS_VESKHTTPPARAMS_H
#define VESK_FOUNDATION_TOOLS_VESKHTTPPARAMS_H

#include <cstdint>
#include <map>
#include <string>

namespace Braxel {
namespace VESK {

enum HttpOpt : uint32_t {
    HTTP_OPT_NO = 0,   ///< none; an idle client
    HTTP_OPT_HEAD = 1, ///< GET without a body; the header text is the answer
    HTTP_OPT_GET = 2,
    HTTP_OPT_POST = 3,
};

/// Hears the outcome of a request, on the request's own thread.
/// @param result 0 for a 2xx answer; otherwise a libcurl code, an HTTP status, 833 for a status of
///        0, or 4 for a request that waited too long.
/// @param body empty on a failure of the transport.
using HttpRequesterCallback = void (*)(int32_t reqSeq, int32_t result, const std::string& body,
                                       void* userData);

/// One request as the HTTP manager takes it.
struct HttpParams {
    uint32_t http_opt_ = HTTP_OPT_NO;
    std::string url;
    int32_t reqSeq = 0;
    HttpRequesterCallback requesterCallback = nullptr;
    std::string postData;
    void* userData = nullptr;
    int64_t requestTime = 0; ///< Unix seconds, stamped when the request is queued
    uint32_t timeout = 0;    ///< seconds; 0 means 15
    int32_t httpDnsWish = 0; ///< HTTP-DNS is used when this and VESK_HTTPDNS_ENABLE are set
    std::map<std::string, std::string> headers;
};

/// A request of the login flow. A copy keeps its request id.
struct VESKHTTPParams : HttpParams {
    std::string seqID; ///< for log lines; may be set after construction

    VESKHTTPParams(uint32_t method, const std::string& requestUrl, HttpRequesterCallback callback,
                   const std::string& body, void* context);

    /// A new request id; the first one is 10001.
    static int32_t GenerateRequestID();
};

} // namespace VESK
} // namespace Braxel

#endif
