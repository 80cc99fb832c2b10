#ifndef VESK_SIMULATORS_KZ_OPEN_SDK_H
#define VESK_SIMULATORS_KZ_OPEN_SDK_H

#include <atomic>
#include <memory>
#include <ocidl.h>

#include "connection_point.h"
#include "event_thread.h"
#include "kzopensdk.h"
#include "player_desk.h"
#include "server.h"
#include "settings.h"

namespace vesk::kzsim {

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
    void onAdvised(const Settings& settings);

private:
    OpenSDK() = default;
    ~OpenSDK();

    /// A request has come: takes the time that it is told to take.
    void takeTime(const Settings& settings);

    /// Answers with the setting @p resultKey, and after a success plays the script @p scriptKey.
    HRESULT answer(const char* resultKey, const char* scriptKey);
    /// As answer() for a QR code, but the player at the scan console decides what follows.
    HRESULT answerInteractively(const Settings& settings, const std::string& controlUrl,
                                const std::string& preCode);
    bool isInitialized();
    /// Called with the lock held.
    std::shared_ptr<EventThread> startedThread();
    void endWork();
    void leaveConsole();
    void sendLateEvent(const Settings& settings);

    const LiveObject mLive;
    std::atomic<ULONG> mReferences{1};
    std::atomic<long> mInside{0}; // requests
    std::shared_ptr<Sinks> mSinks = std::make_shared<Sinks>();
    ConnectionPoint mConnectionPoint{*this, *mSinks};
    Lock mLock; // guards what follows
    bool mIsInitialized = false;
    std::shared_ptr<EventThread> mThread;
    std::unique_ptr<PlayerDesk> mDesk;
};

} // namespace vesk::kzsim

#endif
