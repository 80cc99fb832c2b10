// The options that the library sets include two that newer versions of libcurl call deprecated.
#define CURL_DISABLE_DEPRECATION
#include "foundation/http/veskhttpclient.h"

#include <curl/curl.h>
#include <memory>

#include "config/veskconfigmanager.h"
#include "foundation/http/vesktlsmemory.h"
#include "foundation/log/vesklogger.h"
#include "module/veskmodule.h"
#include "module/veskmutex.h"
#include "platformimpl/foundation/os/clock.h"
#include "platformimpl/foundation/os/file.h"
#include "platformimpl/foundation/os/thread.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr uint32_t kDefaultTimeoutSeconds = 15;

/// No answer of the backend comes near; a server that never stops
/// sending must not eat the game's memory.
constexpr size_t kMaxAnswerBytes = size_t{4} << 20;

/// More is no list of authorities; Schannel's side of libcurl has the same bound.
constexpr int64_t kMaxTrustBytes = int64_t{1} << 20;

struct HandleDeleter {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};
using HandlePtr = std::unique_ptr<CURL, HandleDeleter>;

struct ListDeleter {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using ListPtr = std::unique_ptr<curl_slist, ListDeleter>;

void Append(ListPtr& list, const std::string& line) {
    curl_slist* longer = curl_slist_append(list.get(), line.c_str());
    if (longer != nullptr) {
        (void)list.release();
        list.reset(longer);
    }
}

/// Whether the address begins so, in whatever case: libcurl takes it either way.
bool BeginsWith(const std::string& url, const std::string& scheme) {
    return curl_strnequal(url.c_str(), scheme.c_str(), scheme.size()) != 0;
}

/// "host:port" of an http or https address; empty for any other.
std::string HostAndPort(const std::string& url) {
    for (const auto& scheme : {std::pair<std::string, std::string>{"https://", ":443"},
                               std::pair<std::string, std::string>{"http://", ":80"}}) {
        if (BeginsWith(url, scheme.first)) {
            const size_t begin = scheme.first.size();
            return url.substr(begin, url.find('/', begin) - begin) + scheme.second;
        }
    }
    return {};
}

std::string CertPath() {
    return LibraryDirectory() + "cacert.pem";
}

} // namespace

VESKHTTPClient::VESKHTTPClient() = default;

void VESKHTTPClient::ResetData() {
    VESK_LOG_DEBUG("VESKHTTPClient::ResetData", "[VESK HTTP] http client reset data");
    bool httpDns = true;
    try {
        httpDns = VESKConfigManager::GetInstance()->Get<bool>("VESK_HTTPDNS_ENABLE", true);
    } catch (...) { // NOLINT(bugprone-empty-catch): a client must come back to its pool
    }
    const std::lock_guard<VESKMutex> lock(mMutex);
    mMethod = HTTP_OPT_NO;
    mPostData.clear();
    mResponseBody.clear();
    mResponseHeader.clear();
    mCompletion = nullptr;
    mRequesterCallback = nullptr;
    mResponseCode = 200;
    mReqSeq = 0;
    mUserData = nullptr;
    mDownloadedSize = 0;
    mRequestSize = 0;
    mHeaderSize = 0;
    mStartTime = 0;
    mTransferTime = 0;
    mTimeout = 0;
    mHttpDns = httpDns;
}

bool VESKHTTPClient::Request(const HttpParams& params, Completion completion, void* context) {
    if (params.http_opt_ == HTTP_OPT_NO) {
        VESK_LOG_ERROR("VESKHTTPClient::Request", "[VESK HTTP] http_opt_ != HTTP_OPT_NO");
        return false;
    }
    mUrl = params.url;
    mMethod = params.http_opt_;
    mPostData = params.postData;
    mHeaders = params.headers;
    mReqSeq = params.reqSeq;
    mRequesterCallback = params.requesterCallback;
    mUserData = params.userData;
    mStartTime = params.requestTime;
    mTimeout = params.timeout;
    mHttpDns = VESKConfigManager::GetInstance()->Get<bool>("VESK_HTTPDNS_ENABLE", true) &&
               params.httpDnsWish != 0;
    mCompletion = completion;
    mContext = context;
    return CreateRequestThread();
}

VESKHTTPClient::Outcome VESKHTTPClient::TakeOutcome() noexcept {
    return {std::move(mUrl), mReqSeq,       mResponseCode, mRequesterCallback,
            mUserData,       mTransferTime, mStartTime};
}

bool VESKHTTPClient::CreateRequestThread() {
    VESK_LOG_DEBUG("VESKHTTPClient::CreateRequestThread",
                   "[VESK HTTP] httpclient Create Request Thread start");
    return os::StartDetachedThread(&CreateRequestThreadCallBack, this) == 0;
}

void VESKHTTPClient::CreateRequestThreadCallBack(void* context) {
    VESK_LOG_DEBUG("VESKHTTPClient::CreateRequestThreadCallBack",
                   "[VESK HTTP] httpclient Create Request Thread callback");
    VESKHTTPClient* client = static_cast<VESKHTTPClient*>(context);
    if (client == nullptr) {
        VESK_LOG_ERROR("VESKHTTPClient::CreateRequestThreadCallBack",
                       "[VESK HTTP] null httpClient");
        return;
    }
    os::BlockBrokenPipeSignal();
    int32_t result = CURLE_OUT_OF_MEMORY;
    try {
        switch (client->mMethod) {
        case HTTP_OPT_HEAD:
        case HTTP_OPT_GET:
            result = client->SendReadRequest();
            break;
        case HTTP_OPT_POST:
            result = client->SendPostRequest();
            break;
        default:
            VESK_LOG_DEBUG("VESKHTTPClient::CreateRequestThreadCallBack",
                           "[VESK HTTP] httpclient Create Request Thread callback opt is no");
            return;
        }
    } catch (...) {
        // The requester has to hear of it, and the client goes back to its owner.
        VESK_LOG_ERROR("VESKHTTPClient::CreateRequestThreadCallBack",
                       "[VESK HTTP] exception inside a request, seq:%d", client->mReqSeq);
    }
    client->Complete(result);
}

size_t VESKHTTPClient::Receive(std::string& buffer, const char* data, size_t length) {
    try {
        const std::lock_guard<VESKMutex> lock(mMutex);
        if (length <= kMaxAnswerBytes - buffer.size()) {
            buffer.append(data, length);
            return length;
        }
    } catch (...) { // NOLINT(bugprone-empty-catch): reported below
    }
    return 0; // libcurl ends the transfer with a write error.
}

size_t VESKHTTPClient::OnBody(char* data, size_t size, size_t count, void* context) {
    VESKHTTPClient* client = static_cast<VESKHTTPClient*>(context);
    return client->Receive(client->mResponseBody, data, size * count);
}

size_t VESKHTTPClient::OnHeader(char* data, size_t size, size_t count, void* context) {
    VESKHTTPClient* client = static_cast<VESKHTTPClient*>(context);
    return client->mBounds.CountHeader(size * count)
               ? client->Receive(client->mResponseHeader, data, size * count)
               : 0;
}

size_t VESKHTTPClient::OnCountedHeader(char* /*data*/, size_t size, size_t count, void* context) {
    VESKHTTPClient* client = static_cast<VESKHTTPClient*>(context);
    return client->mBounds.CountHeader(size * count) ? size * count : 0;
}

long VESKHTTPClient::TimeoutSeconds() const {
    return static_cast<long>(mTimeout == 0 ? kDefaultTimeoutSeconds : mTimeout);
}

void VESKHTTPClient::SetTransport(void* handle, const std::string& certPath,
                                  VESKTLSMemory& memory) {
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_NOPROGRESS, 1L);
    curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(handle, CURLOPT_URL, mUrl.c_str());
    // A redirect sends the body again: never from https to anything that is in the clear. Without
    // the slashes, because libcurl takes one and three of them as well.
    const bool isSecure = BeginsWith(mUrl, "https:");
    curl_easy_setopt(handle, CURLOPT_REDIR_PROTOCOLS,
                     isSecure ? CURLPROTO_HTTPS : CURLPROTO_HTTP | CURLPROTO_HTTPS);
    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYHOST, 2L);
    // No file is below a file, so libcurl finds nothing to wait for or to fill the memory with.
    const bool isUsable = !os::IsOtherThanPlainFile(certPath, kMaxTrustBytes);
    const std::string path = isUsable ? certPath : certPath + "/";
    // Deliberate: no file when its parsed form stands in for it, which an earlier request has read.
    // Only while nothing about the file has changed or is in doubt.
    const bool isLent = isUsable && memory.Lend(handle);
    curl_easy_setopt(handle, CURLOPT_CAINFO, isLent ? nullptr : path.c_str());
    // Some builds of libcurl trust the system's authorities besides.
    curl_easy_setopt(handle, CURLOPT_CAPATH, nullptr);
    curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT, TimeoutSeconds());
    curl_easy_setopt(handle, CURLOPT_TIMEOUT, TimeoutSeconds());
    curl_easy_setopt(handle, CURLOPT_DNS_USE_GLOBAL_CACHE, 0L);
    curl_easy_setopt(handle, CURLOPT_DNS_CACHE_TIMEOUT, 60L);
    mBounds.Begin(handle, TimeoutSeconds());
}

int32_t VESKHTTPClient::Perform(void* handle, VESKTLSMemory& memory) {
    const int64_t before = os::UnixSeconds();
    const int32_t result = mBounds.Judge(curl_easy_perform(handle));
    memory.Keep(result == CURLE_OK);
    const int64_t now = os::UnixSeconds();
    mTransferTime = now - before;
    mStartTime = now - mStartTime;
    return result;
}

int32_t VESKHTTPClient::ReadResponseCode(void* handle) {
    long code = 0;
    const CURLcode result = curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &code);
    mResponseCode = static_cast<int32_t>(code);
    return result;
}

void VESKHTTPClient::ReadStatistics(void* handle) {
    long requestSize = 0;
    long headerSize = 0;
    curl_easy_getinfo(handle, CURLINFO_SIZE_DOWNLOAD, &mDownloadedSize);
    curl_easy_getinfo(handle, CURLINFO_REQUEST_SIZE, &requestSize);
    curl_easy_getinfo(handle, CURLINFO_HEADER_SIZE, &headerSize);
    mRequestSize = static_cast<int32_t>(requestSize);
    mHeaderSize = static_cast<int32_t>(headerSize);
}

void VESKHTTPClient::Complete(int32_t result) {
    if (mCompletion == nullptr) {
        return;
    }
    const std::string& body = mMethod == HTTP_OPT_HEAD ? mResponseHeader : mResponseBody;
    const bool good = result == CURLE_OK;
    mCompletion(result, good ? body.data() : nullptr, good ? body.size() : 0, this, mContext);
}

int32_t VESKHTTPClient::SendReadRequest() {
    VESK_LOG_DEBUG("VESKHTTPClient::SendReadRequest",
                   "[VESK HTTP] httpclient get start curl, seq:%d", mReqSeq);
    const std::string certPath = CertPath();
    VESKTLSMemory memory(mUrl, certPath);
    HandlePtr handle(curl_easy_init());
    if (!handle) {
        VESK_LOG_ERROR("VESKHTTPClient::SendReadRequest", "[VESK HTTP] curl_handle NULL");
        // Deliberate: the requester is not told. The client goes back to its owner all the same.
        mRequesterCallback = nullptr;
        return CURLE_FAILED_INIT;
    }
    VESK_LOG_INFO("VESKHTTPClient::SendReadRequest", "cert path:%s", certPath.c_str());
    SetTransport(handle.get(), certPath, memory);
    curl_easy_setopt(handle.get(), CURLOPT_MAXREDIRS, 2L);
    ListPtr hosts;
    if (mHttpDns) {
        // Deliberate: made and freed, never set on the handle.
        Append(hosts, HostAndPort(mUrl));
    }
    curl_easy_setopt(handle.get(), CURLOPT_HEADERFUNCTION, &OnHeader);
    curl_easy_setopt(handle.get(), CURLOPT_HEADERDATA, this);
    if (mMethod == HTTP_OPT_HEAD) {
        curl_easy_setopt(handle.get(), CURLOPT_NOBODY, 1L);
    } else {
        curl_easy_setopt(handle.get(), CURLOPT_NOBODY, 0L);
        curl_easy_setopt(handle.get(), CURLOPT_WRITEFUNCTION, &OnBody);
        curl_easy_setopt(handle.get(), CURLOPT_WRITEDATA, this);
    }
    const int32_t result = Perform(handle.get(), memory);
    const int32_t codeResult = ReadResponseCode(handle.get());
    if (codeResult != CURLE_OK) {
        VESK_LOG_ERROR("VESKHTTPClient::SendReadRequest", "Curl curl_easy_getinfo failed: %s\n",
                       curl_easy_strerror(static_cast<CURLcode>(codeResult)));
    }
    VESK_LOG_DEBUG("VESKHTTPClient::SendReadRequest",
                   "[VESK HTTP] Get method get http response code get http response code "
                   "result:%d, code:%ld",
                   result, static_cast<long>(mResponseCode));
    if (result != 0) {
        VESK_LOG_DEBUG("VESKHTTPClient::SendReadRequest",
                       "[VESK HTTP] httpclient get curl easy perform return retcode:%d, url:%s "
                       "seq:%d",
                       result, mUrl.c_str(), mReqSeq);
        return result;
    }
    ReadStatistics(handle.get());
    return CURLE_OK;
}

int32_t VESKHTTPClient::SendPostRequest() {
    VESK_LOG_DEBUG("VESKHTTPClient::SendPostRequest",
                   "[VESK HTTP] httpclient post start curl, seq:%d", mReqSeq);
    const std::string certPath = CertPath();
    VESKTLSMemory memory(mUrl, certPath);
    HandlePtr handle(curl_easy_init());
    if (!handle) {
        VESK_LOG_ERROR("VESKHTTPClient::SendPostRequest", "[VESK HTTP] curl_handle NULL");
        return CURLE_FAILED_INIT;
    }
    VESK_LOG_INFO("VESKHTTPClient::SendPostRequest", "cert path:%s", certPath.c_str());
    SetTransport(handle.get(), certPath, memory);
    // UPLOAD 0 turns the method into GET; POSTFIELDS below turns it back. Keep this order.
    curl_easy_setopt(handle.get(), CURLOPT_POST, 1L);
    curl_easy_setopt(handle.get(), CURLOPT_UPLOAD, 0L);
    curl_easy_setopt(handle.get(), CURLOPT_WRITEFUNCTION, &OnBody);
    curl_easy_setopt(handle.get(), CURLOPT_WRITEDATA, this);
    // Nobody wants the headers of a POST. They are counted, which no peer can tell from leaving
    // them to libcurl, because it would keep as many as a peer sends.
    curl_easy_setopt(handle.get(), CURLOPT_HEADERFUNCTION, &OnCountedHeader);
    curl_easy_setopt(handle.get(), CURLOPT_HEADERDATA, this);
    ListPtr headers;
    for (const auto& header : mHeaders) {
        Append(headers, header.first + ": " + header.second);
    }
    curl_easy_setopt(handle.get(), CURLOPT_HTTPHEADER, headers.get());
    curl_easy_setopt(handle.get(), CURLOPT_POSTFIELDS, mPostData.data());
    curl_easy_setopt(handle.get(), CURLOPT_POSTFIELDSIZE, static_cast<long>(mPostData.size()));

    const int64_t requestTime = mStartTime;
    const int32_t result = Perform(handle.get(), memory);
    VESK_LOG_DEBUG("VESKHTTPClient::SendPostRequest",
                   "[VESK HTTP] httpclient post seq:%d curl_easy_perform and retCode:%d with "
                   "left_timeout:%d",
                   mReqSeq, result, static_cast<int>(TimeoutSeconds()));
    headers.reset();
    VESK_LOG_DEBUG("VESKHTTPClient::SendPostRequest",
                   "[VESK HTTP] http client statistic starttime:%lld, reqissuetiem:%lld, "
                   "reqrequestime:%lld",
                   static_cast<long long>(requestTime), static_cast<long long>(mTransferTime),
                   static_cast<long long>(mStartTime));
    ReadResponseCode(handle.get());
    VESK_LOG_DEBUG("VESKHTTPClient::SendPostRequest",
                   "[VESK HTTP] POST method get http response code result:%d, code:%ld", result,
                   static_cast<long>(mResponseCode));
    if (result != 0) {
        VESK_LOG_DEBUG("VESKHTTPClient::SendPostRequest",
                       "[VESK HTTP] httpclient get curl easy perform return retcode:%d, url:%s "
                       "seq:%d",
                       result, mUrl.c_str(), mReqSeq);
    }
    return result;
}

} // namespace VESK
} // namespace Braxel
