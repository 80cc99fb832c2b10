#ifndef VESK_FOUNDATION_HTTP_VESKHTTPMANAGER_H
#define VESK_FOUNDATION_HTTP_VESKHTTPMANAGER_H

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "foundation/http/veskhttpclient.h"
#include "foundation/tools/veskhttpparams.h"
#include "module/veskmutex.h"
#include "module/vesksingleton.h"

namespace Braxel {
namespace VESK {

/// Every backend request goes through here: a queue, four clients that work it off, and the
/// judgement of each outcome. No lock is held while a requester is called.
class VESKHTTPManager {
public:
    static VESKHTTPManager* GetInstance() { return VESKSingleton<VESKHTTPManager>::GetInstance(); }

    VESKHTTPManager();
    ~VESKHTTPManager();
    VESKHTTPManager(const VESKHTTPManager&) = delete;
    VESKHTTPManager& operator=(const VESKHTTPManager&) = delete;

    /// The constructor has done this; a second call is only logged.
    void init();

    /// Queues a copy of @p params and starts it when a client is idle.
    /// @return false when the parameters cannot be used; the requester is not called then, and
    ///         what its user data points to stays the caller's.
    bool Request(const VESKHTTPParams* params);

    /// Ends the dispatching of requests for good. Those in the queue are answered as expired, and
    /// so are those in flight, each when it has ended.
    void Shutdown();

    virtual size_t GetPoolSize() { return 4; }
    virtual void InitHttpClient();
    virtual void RunRequest();

private:
    using ParamsPtr = std::unique_ptr<VESKHTTPParams>;

    bool IsShutdown();
    VESKHTTPClient* GetHTTPClient();
    void RetrieveHTTPClient(VESKHTTPClient* client);
    static void OnHTTPClientCallBack(int32_t result, const char* body, size_t length,
                                     VESKHTTPClient* client, void* manager);

    ParamsPtr TakeFresh(std::list<ParamsPtr>& expired, int32_t timeoutSeconds);
    void Dispatch(VESKHTTPClient* client, const VESKHTTPParams& params);
    int32_t JudgeResult(int32_t result, const VESKHTTPClient::Outcome& outcome,
                        const std::string& body);
    void CountHostError(int32_t result, const VESKHTTPClient::Outcome& outcome);
    void AddStatistics(const VESKHTTPClient::Outcome& outcome, size_t bodyLength);

    bool mInited = false;
    bool mShutdown = false;
    // Neither asks for memory when something is taken out or a client comes back.
    std::vector<VESKHTTPClient*> mIdleClients; // clients live as long as the manager
    std::list<ParamsPtr> mRequestQueue;
    VESKMutex mMutex; // guards the four above

    VESKMutex mStatisticsMutex; // guards what follows
    uint32_t mReceivedBytes = 0;
    int64_t mTransferSeconds = 0;
    int64_t mRequestSeconds = 0;
    int32_t mCompletedCount = 0;
    int32_t errorTimeOutCount = 0;
    int32_t errorReshostCount = 0;
    int32_t errorConnectCount = 0;
};

} // namespace VESK
} // namespace Braxel

#endif
