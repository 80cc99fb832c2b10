#include "foundation/http/veskhttpmanager.h"

#include <curl/curl.h>

#include "config/veskconfigmanager.h"
#include "foundation/http/vesktlsmemory.h"
#include "foundation/lifecycle/veskactivity.h"
#include "foundation/log/vesklogger.h"
#include "module/veskmutex.h"
#include "platformimpl/foundation/os/clock.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr size_t kQueueWarningSize = 20;
constexpr int32_t kHostErrorLimit = 8;
constexpr int32_t kResultExpired = 4;
constexpr int32_t kResultNoStatus = 833;

unsigned long Count(size_t size) {
    return static_cast<unsigned long>(size);
}

/// Calls the requester, once for each request that was queued. What it throws ends here: the client
/// and the queue must go on.
void Answer(HttpRequesterCallback requester, int32_t reqSeq, int32_t result,
            const std::string& body, void* userData) {
    try {
        if (requester != nullptr) {
            requester(reqSeq, result, body, userData);
        }
    } catch (...) {
        VESK_LOG_ERROR("VESKHTTPManager::OnHTTPClientCallBack",
                       "[VESK HTTP] exception out of the requester, reqSeq:%d", reqSeq);
    }
    VESKActivity::End();
}

void Answer(const VESKHTTPParams& params, int32_t result) {
    Answer(params.requesterCallback, params.reqSeq, result, std::string(), params.userData);
}

int32_t QueueTimeoutSeconds() {
    constexpr int32_t kDefault = 15;
    try {
        return VESKConfigManager::GetInstance()->Get<int>("VESK_HTTP_TIMEOUT", kDefault);
    } catch (...) {
        return kDefault;
    }
}

} // namespace

VESKHTTPManager::VESKHTTPManager() {
    init();
}

VESKHTTPManager::~VESKHTTPManager() {
    for (const VESKHTTPClient* client : mIdleClients) {
        delete client;
    }
}

void VESKHTTPManager::init() {
    if (mInited) {
        VESK_LOG_ERROR("VESKHTTPManager::init", "[VESK HTTP] VESKHTTPManager is inited");
        return;
    }
    mInited = true;
    {
        static VESKMutex mutex; // not every libcurl guards this itself
        const std::lock_guard<VESKMutex> lock(mutex);
        curl_global_init(CURL_GLOBAL_ALL); // counts, and does it once
    }
    InitHttpClient();
    VESK_LOG_DEBUG("VESKHTTPManager::init", "[VESK HTTP] VESKHTTPManager::Init()");
}

void VESKHTTPManager::InitHttpClient() {
    mIdleClients.reserve(GetPoolSize());
    for (size_t i = 0; i < GetPoolSize(); ++i) {
        VESKHTTPClient* client = new (std::nothrow) VESKHTTPClient;
        if (client == nullptr) {
            VESK_LOG_ERROR("VESKHTTPManager::InitHttpClient", "Can not init http client!");
            continue;
        }
        client->ResetData();
        mIdleClients.push_back(client);
        VESK_LOG_DEBUG("VESKHTTPManager::InitHttpClient",
                       "[VESK HTTP] InitHttpClient success client:%p i:%d",
                       static_cast<void*>(client), static_cast<int>(i));
    }
    VESK_LOG_DEBUG("VESKHTTPManager::InitHttpClient", "[VESK HTTP] VESKHTTPManager::init()");
}

bool VESKHTTPManager::Request(const VESKHTTPParams* params) {
    if (params == nullptr || params->url.empty()) {
        VESK_LOG_DEBUG("VESKHTTPManager::Request",
                       "[VESK HTTP] http params error! params is NULL or url is empty");
        return false;
    }
    if (params->http_opt_ == HTTP_OPT_POST && params->postData.empty()) {
        VESK_LOG_DEBUG("VESKHTTPManager::Request", "[VESK HTTP] http post data is empty!");
        return false;
    }
    if (params->http_opt_ != HTTP_OPT_GET && params->http_opt_ != HTTP_OPT_POST) {
        VESK_LOG_DEBUG("VESKHTTPManager::Request",
                       "[VESK HTTP] http not HTTP_OPT_POST or HTTP_OPT_GET!");
        return false;
    }
    VESK_LOG_DEBUG("VESKHTTPManager::Request",
                   "[ %s ][VESK HTTP] request url : %s with postBody : %s opt:%d reqSeq:%d, "
                   "reqTime:%lld",
                   params->seqID.c_str(), params->url.c_str(), params->postData.c_str(),
                   static_cast<int>(params->http_opt_), params->reqSeq,
                   static_cast<long long>(params->requestTime));
    {
        auto copy = std::make_unique<VESKHTTPParams>(*params);
        const std::lock_guard<VESKMutex> lock(mMutex);
        if (mShutdown) {
            return false;
        }
        copy->requestTime = os::UnixSeconds();
        mRequestQueue.push_back(std::move(copy));
        VESKActivity::Begin();
        const unsigned long size = Count(mRequestQueue.size());
        VESK_LOG_DEBUG("VESKHTTPManager::Request", "[VESK HTTP] request que size:%lu", size);
        if (size > kQueueWarningSize) {
            VESK_LOG_ERROR("VESKHTTPManager::Request",
                           "client manager request que size is overload:%lu", size);
        }
    }
    RunRequest();
    VESK_LOG_DEBUG("VESKHTTPManager::Request",
                   "[ %s ][VESK HTTP] make request %s finish and await network callback",
                   params->seqID.c_str(), params->url.c_str());
    return true;
}

bool VESKHTTPManager::IsShutdown() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    return mShutdown;
}

void VESKHTTPManager::Shutdown() {
    std::list<ParamsPtr> dropped;
    {
        const std::lock_guard<VESKMutex> lock(mMutex);
        mShutdown = true;
        dropped.swap(mRequestQueue);
    }
    // Their requesters free what they passed along.
    for (const ParamsPtr& params : dropped) {
        Answer(*params, kResultExpired);
    }
    VESKTLSMemory::End();
}

VESKHTTPClient* VESKHTTPManager::GetHTTPClient() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    if (mIdleClients.empty()) {
        return nullptr;
    }
    VESKHTTPClient* client = mIdleClients.front();
    mIdleClients.erase(mIdleClients.begin());
    VESK_LOG_DEBUG("VESKHTTPManager::GetHTTPClient", "[VESK HTTP] get an idle http client");
    return client;
}

void VESKHTTPManager::RetrieveHTTPClient(VESKHTTPClient* client) {
    if (client == nullptr) {
        VESK_LOG_ERROR("VESKHTTPManager::RetrieveHTTPClient",
                       "[VESK HTTP] retrieve a NULL http client ");
        return;
    }
    client->ResetData();
    const std::lock_guard<VESKMutex> lock(mMutex);
    mIdleClients.push_back(client);
}

VESKHTTPManager::ParamsPtr VESKHTTPManager::TakeFresh(std::list<ParamsPtr>& expired,
                                                      int32_t timeoutSeconds) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    while (!mRequestQueue.empty()) {
        const ParamsPtr& params = mRequestQueue.front();
        const int64_t now = os::UnixSeconds();
        const int64_t age = now - params->requestTime;
        if (age >= 0 && age < timeoutSeconds) {
            ParamsPtr fresh = std::move(mRequestQueue.front());
            mRequestQueue.pop_front();
            return fresh;
        }
        VESK_LOG_DEBUG("VESKHTTPManager::RunRequest",
                       "[VESK HTTP] req timeout! reqSeq:%d, url:%s, c_time:%lld, req_time:%lld",
                       params->reqSeq, params->url.c_str(), static_cast<long long>(now),
                       static_cast<long long>(params->requestTime));
        expired.splice(expired.end(), mRequestQueue, mRequestQueue.begin());
    }
    return nullptr;
}

void VESKHTTPManager::RunRequest() {
    for (;;) {
        VESKHTTPClient* client = GetHTTPClient();
        if (client == nullptr) {
            // Deliberate: the comma is a full-width one in GBK.
            VESK_LOG_DEBUG("VESKHTTPManager::RunRequest",
                           "[VESK HTTP] can not get an idle http client\xA3\xAC"
                           "waiting in request queue");
            return;
        }
        VESK_LOG_DEBUG("VESKHTTPManager::RunRequest", "[VESK HTTP] Get clientIdle successful");
        std::list<ParamsPtr> expired;
        const ParamsPtr fresh = TakeFresh(expired, QueueTimeoutSeconds());
        for (const ParamsPtr& params : expired) {
            Answer(*params, kResultExpired);
        }
        if (fresh) {
            Dispatch(client, *fresh);
            return;
        }
        VESK_LOG_DEBUG("VESKHTTPManager::RunRequest", "[VESK HTTP] have no available http request");
        const std::lock_guard<VESKMutex> lock(mMutex);
        mIdleClients.push_back(client);
        // A request that came while this client was out found no idle one and relies on us.
        if (mRequestQueue.empty()) {
            return;
        }
    }
}

void VESKHTTPManager::Dispatch(VESKHTTPClient* client, const VESKHTTPParams& params) {
    VESK_LOG_DEBUG("VESKHTTPManager::RunRequest",
                   "[VESK HTTP] http request url:%s, opt:%d, reqSeq:%d", params.url.c_str(),
                   static_cast<int>(params.http_opt_), params.reqSeq);
    bool started = false;
    try {
        started = client->Request(params, &OnHTTPClientCallBack, this);
    } catch (...) { // NOLINT(bugprone-empty-catch): answered below
    }
    if (started) {
        return;
    }
    VESK_LOG_DEBUG("VESKHTTPManager::RunRequest",
                   "[VESK HTTP] http request fail url:%s, opt:%d, reqSeq:%d", params.url.c_str(),
                   static_cast<int>(params.http_opt_), params.reqSeq);
    RetrieveHTTPClient(client);
    Answer(params, CURLE_FAILED_INIT);
}

int32_t VESKHTTPManager::JudgeResult(int32_t result, const VESKHTTPClient::Outcome& outcome,
                                     const std::string& body) {
    if (result != CURLE_OK) {
        CountHostError(result, outcome);
        return result;
    }
    if (outcome.responseCode >= 200 && outcome.responseCode <= 299) {
        return 0;
    }
    VESK_LOG_ERROR("VESKHTTPManager::OnHTTPClientCallBack",
                   "[VESK HTTP] http reqSeq:%d, responseCode: %d, url:%s, body:%s", outcome.reqSeq,
                   outcome.responseCode, outcome.url.c_str(), body.c_str());
    return outcome.responseCode == 0 ? kResultNoStatus : outcome.responseCode;
}

void VESKHTTPManager::CountHostError(int32_t result, const VESKHTTPClient::Outcome& outcome) {
    int32_t* counter = nullptr;
    const char* name = nullptr;
    switch (result) {
    case CURLE_OPERATION_TIMEDOUT:
        counter = &errorTimeOutCount;
        name = "errorTimeOutCount";
        break;
    case CURLE_COULDNT_RESOLVE_HOST:
        counter = &errorReshostCount;
        name = "errorReshostCount";
        break;
    case CURLE_COULDNT_CONNECT:
        counter = &errorConnectCount;
        name = "errorConnectCount";
        break;
    default:
        VESK_LOG_ERROR("VESKHTTPManager::OnHTTPClientCallBack",
                       "[VESK HTTP] VESKHTTPManager return host error, result:%d, reqSeq:%d, "
                       "url:%s",
                       result, outcome.reqSeq, outcome.url.c_str());
        return;
    }
    int32_t count = 0;
    {
        const std::lock_guard<VESKMutex> lock(mStatisticsMutex);
        count = ++*counter;
        if (count > kHostErrorLimit) {
            *counter = 0;
        }
    }
    if (count > kHostErrorLimit) {
        VESK_LOG_ERROR("VESKHTTPManager::OnHTTPClientCallBack",
                       "[VESK HTTP] VESKHTTPManager return host error, result:%d, %s:%d, "
                       "reqSeq:%d, url:%s",
                       result, name, count, outcome.reqSeq, outcome.url.c_str());
    }
}

void VESKHTTPManager::AddStatistics(const VESKHTTPClient::Outcome& outcome, size_t bodyLength) {
    const std::lock_guard<VESKMutex> lock(mStatisticsMutex);
    mReceivedBytes += static_cast<uint32_t>(bodyLength);
    ++mCompletedCount;
    mTransferSeconds += outcome.transferSeconds;
    mRequestSeconds += outcome.totalSeconds;
}

void VESKHTTPManager::OnHTTPClientCallBack(int32_t result, const char* body, size_t length,
                                           VESKHTTPClient* client, void* context) {
    VESKHTTPManager* manager = static_cast<VESKHTTPManager*>(context);
    VESK_LOG_DEBUG("VESKHTTPManager::OnHTTPClientCallBack",
                   "[VESK HTTP] get http Callback, result:%d", result);
    // Everything is taken first: once retrieved, the client may serve another request.
    const VESKHTTPClient::Outcome outcome = client->TakeOutcome();
    std::string answer;
    try {
        answer.assign(body == nullptr ? "" : body, length);
    } catch (...) {
        result = CURLE_OUT_OF_MEMORY;
    }
    int32_t judged = manager->JudgeResult(result, outcome, answer);
    manager->RetrieveHTTPClient(client);
    manager->AddStatistics(outcome, answer.size());
    if (manager->IsShutdown()) {
        // Nothing may come of it any more; the requester only frees what it passed along.
        judged = kResultExpired;
    }
    Answer(outcome.requesterCallback, outcome.reqSeq, judged, answer, outcome.userData);
    bool waiting = false;
    {
        const std::lock_guard<VESKMutex> lock(manager->mMutex);
        waiting = !manager->mRequestQueue.empty();
    }
    if (waiting) {
        manager->RunRequest();
    }
}

} // namespace VESK
} // namespace Braxel
