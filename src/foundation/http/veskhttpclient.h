#ifndef VESK_FOUNDATION_HTTP_VESKHTTPCLIENT_H
#define VESK_FOUNDATION_HTTP_VESKHTTPCLIENT_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "foundation/http/vesktransferbounds.h"
#include "foundation/tools/veskhttpparams.h"
#include "module/veskmutex.h"

namespace Braxel {
namespace VESK {

class VESKTLSMemory;

/// Carries out one HTTP request at a time with libcurl, on a detached thread made for it. It keeps
/// no connection: each request makes its own handle.
class VESKHTTPClient {
public:
    /// Called once at the end of a request, on its thread. The client may serve another request
    /// as soon as it is handed back, so the request's thread does not touch it after this call.
    /// @param result 0 or a libcurl code. @param body null when there is none.
    using Completion = void (*)(int32_t result, const char* body, size_t length,
                                VESKHTTPClient* client, void* context);

    /// What the owner needs of a request once it has ended.
    struct Outcome {
        const std::string& url; ///< the client's own
        int32_t reqSeq;
        int32_t responseCode;
        HttpRequesterCallback requesterCallback;
        void* userData;
        int64_t transferSeconds;
        int64_t totalSeconds;
    };

    VESKHTTPClient();
    VESKHTTPClient(const VESKHTTPClient&) = delete;
    VESKHTTPClient& operator=(const VESKHTTPClient&) = delete;

    /// Makes the client idle again.
    void ResetData();

    /// Starts the request.
    /// @return false when it did not start; @p completion is not called then.
    bool Request(const HttpParams& params, Completion completion, void* context);

    /// What is known of the request; for use inside the completion, until the client goes back.
    Outcome TakeOutcome() noexcept;

private:
    bool CreateRequestThread();
    static void CreateRequestThreadCallBack(void* client);
    static size_t OnBody(char* data, size_t size, size_t count, void* client);
    static size_t OnHeader(char* data, size_t size, size_t count, void* client);
    static size_t OnCountedHeader(char* data, size_t size, size_t count, void* client);
    size_t Receive(std::string& buffer, const char* data, size_t length);

    int32_t SendReadRequest();
    int32_t SendPostRequest();

    /// Sets what every transfer has in common on the CURL handle.
    void SetTransport(void* handle, const std::string& certPath, VESKTLSMemory& memory);
    int32_t Perform(void* handle, VESKTLSMemory& memory);
    int32_t ReadResponseCode(void* handle);
    void ReadStatistics(void* handle);
    void Complete(int32_t result);
    long TimeoutSeconds() const;

    std::string mUrl;
    uint32_t mMethod = HTTP_OPT_NO;
    std::string mPostData;
    std::string mResponseBody;
    std::string mResponseHeader;
    std::map<std::string, std::string> mHeaders;
    Completion mCompletion = nullptr;
    HttpRequesterCallback mRequesterCallback = nullptr;
    int32_t mResponseCode = 200;
    int32_t mReqSeq = 0;
    void* mContext = nullptr;
    void* mUserData = nullptr;
    VESKMutex mMutex; // guards the two receive buffers
    double mDownloadedSize = 0;
    int32_t mRequestSize = 0;
    int32_t mHeaderSize = 0;
    int64_t mStartTime = 0; // the queue time; the total seconds once the transfer has ended
    int64_t mTransferTime = 0;
    uint32_t mTimeout = 0;
    bool mHttpDns = false;
    VESKTransferBounds mBounds;
};

} // namespace VESK
} // namespace Braxel

#endif
