#include "foundation/tools/veskhttpparams.h"

#include <atomic>

#include "foundation/log/vesklogger.h"

namespace Braxel {
namespace VESK {

VESKHTTPParams::VESKHTTPParams(uint32_t method, const std::string& requestUrl,
                               HttpRequesterCallback callback, const std::string& body,
                               void* context) {
    http_opt_ = method;
    url = requestUrl;
    reqSeq = GenerateRequestID();
    requesterCallback = callback;
    postData = body;
    userData = context;
}

int32_t VESKHTTPParams::GenerateRequestID() {
    static std::atomic<int32_t> lastID{10000};
    const int32_t id = ++lastID;
    VESK_LOG_DEBUG("VESKHTTPParams::GenerateRequestID",
                   "[VESK HTTP] httpparams generate new requestid :%d", id);
    return id;
}

} // namespace VESK
} // namespace Braxel
