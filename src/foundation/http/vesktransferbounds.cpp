#include "foundation/http/vesktransferbounds.h"

#include <curl/curl.h>

#include "platformimpl/foundation/os/clock.h"

namespace Braxel {
namespace VESK {

namespace {

/// libcurl needs up to twenty times as much: it keeps each line in a record of its own.
constexpr size_t kMaxHeaderBytes = size_t{1} << 20;

/// libcurl's own time-out, where it looks at it, comes first.
constexpr uint64_t kGraceMilliseconds = 1000;

int OnProgress(void* bounds, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    return static_cast<const VESKTransferBounds*>(bounds)->IsExceeded() ? 1 : 0;
}

} // namespace

bool VESKTransferBounds::HasProxy() {
    const char* const names[] = {"https_proxy", "HTTPS_PROXY", "http_proxy", "all_proxy",
                                 "ALL_PROXY"};
    for (const char* name : names) {
        // The look-up is libcurl's own, because the C runtime of Windows has a list of its own.
        if (char* value = curl_getenv(name)) {
            curl_free(value);
            return true;
        }
    }
    return false;
}

void VESKTransferBounds::Begin(void* handle, long timeoutSeconds) {
    mHeaderBytes = 0;
    mStart = os::TickCount();
    mMilliseconds = static_cast<uint64_t>(timeoutSeconds) * 1000 + kGraceMilliseconds;
    if (HasProxy()) {
        // While it reads the answer to CONNECT, libcurl calls this, and nothing that it would
        // listen to besides.
        curl_easy_setopt(handle, CURLOPT_XFERINFOFUNCTION, &OnProgress);
        curl_easy_setopt(handle, CURLOPT_XFERINFODATA, this);
        curl_easy_setopt(handle, CURLOPT_NOPROGRESS, 0L);
    }
}

bool VESKTransferBounds::CountHeader(size_t length) {
    mHeaderBytes += length;
    return mHeaderBytes <= kMaxHeaderBytes;
}

bool VESKTransferBounds::IsExceeded() const {
    return mHeaderBytes > kMaxHeaderBytes || os::TickCount() - mStart > mMilliseconds;
}

int32_t VESKTransferBounds::Judge(int32_t result) const {
    if (result != CURLE_ABORTED_BY_CALLBACK) {
        return result;
    }
    return mHeaderBytes > kMaxHeaderBytes ? CURLE_WRITE_ERROR : CURLE_OPERATION_TIMEDOUT;
}

} // namespace VESK
} // namespace Braxel
