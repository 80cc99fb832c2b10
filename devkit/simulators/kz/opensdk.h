#ifndef VESK_DEVKIT_SIMULATORS_KZ_OPENSDK_H
#define VESK_DEVKIT_SIMULATORS_KZ_OPENSDK_H

#include <atomic>
#include <memory>
#include <ocidl.h>

#include "connectionpoint.h"
#include "eventthread.h"
#include "kzopensdk.h"
#include "playerdesk.h"

namespace vesk::kzsim {

/// What a call answers; success when nothing is said.
HRESULT resultOf(const simulator::Settings& settings, const char* key);

/// The component's object: answers requests at once, unless it is told to be slow, and lets the
/// scripted events follow.
class OpenSDK final : public IKZOpenSDK, public IConnectionPointContainer {
public:
    /// A new object, or the process's one when the settings say so; with one reference, which
    /// belongs to the caller.
    static OpenSDK* make();

    OpenSDK(const OpenSDK&) = delete;
    OpenSDK& operator=(const OpenSDK&) = delete;

    ULONG STDMETHODCALLTYPE AddRef() override { return ++mReferences; }
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;

    HRESULT STDMETHODCALLTYPE CreateParameters(IKZProperties** parameters) override;
    HRESULT STDMETHODCALLTYPE Initialize(IKZProperties* parameters) override;
    HRESULT STDMETHODCALLTYPE UnInitialize() override;
    HRESULT STDMETHODCALLTYPE GetGenerateSerialNumber(IKZProperties** answer) override;
    HRESULT STDMETHODCALLTYPE LoginByQRCode(IKZProperties* parameters) override;
    HRESULT STDMETHODCALLTYPE GetLocalLoginList() override;
    HRESULT STDMETHODCALLTYPE LoginByLocalLoginUser(BSTR openid) override;
    HRESULT STDMETHODCALLTYPE RefreshClientTempKey() override;
    HRESULT STDMETHODCALLTYPE Logout() override;

    HRESULT STDMETHODCALLTYPE
    EnumConnectionPoints(IEnumConnectionPoints** connectionPoints) override;
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID id,
                                                  IConnectionPoint** connectionPoint) override;

    /// A listener has come; its Advise has not returned yet.
    void onAdvised(const simulator::Settings& settings);

private:
    OpenSDK() = default;
    ~OpenSDK();

    /// A request has come: takes the time that it is told to take.
    void takeTime(const simulator::Settings& settings);

    /// Answers with the setting @p resultKey, and after a success plays the script @p scriptKey.
    HRESULT answer(const char* resultKey, const char* scriptKey);
    /// As answer() for a QR code, but the player at the scan page decides what follows.
    HRESULT answerInteractively(const simulator::Settings& settings, const std::string& controlUrl,
                                const std::string& preCode);
    bool isInitialized();
    /// Called with the lock held.
    std::shared_ptr<EventThread> startedThread();
    void endWork();
    void leaveScanPage();
    void sendLateEvent(const simulator::Settings& settings);

    const LiveObject mLive;
    std::atomic<ULONG> mReferences{1};
    std::atomic<long> mInside{0}; // requests
    std::shared_ptr<Listeners> mListeners = std::make_shared<Listeners>();
    ConnectionPoint mConnectionPoint{*this, *mListeners};
    Lock mLock; // guards what follows
    bool mIsInitialized = false;
    std::shared_ptr<EventThread> mThread;
    std::unique_ptr<simulator::PlayerDesk> mDesk;
};

} // namespace vesk::kzsim

#endif
