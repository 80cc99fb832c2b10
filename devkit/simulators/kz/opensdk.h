#ifndef VESK_DEVKIT_SIMULATORS_KZ_OPENSDK_H
#define VESK_DEVKIT_SIMULATORS_KZ_OPENSDK_H

#include <atomic>
#include <functional>
#include <memory>
#include <ocidl.h>
#include <string>

#include "events.h"
#include "playerdesk.h"

namespace vesk::kzsim {

/// What a call answers; success when nothing is said.
HRESULT resultOf(const simulator::Settings& settings, const char* key);

/// The part of the component's object that calls back: where listeners are advised, and what
/// follows a request. It is its own connection point.
class EventSource : public IConnectionPointContainer, public IConnectionPoint {
public:
    EventSource(const EventSource&) = delete;
    EventSource& operator=(const EventSource&) = delete;

    HRESULT STDMETHODCALLTYPE
    EnumConnectionPoints(IEnumConnectionPoints** /*connectionPoints*/) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID id,
                                                  IConnectionPoint** connectionPoint) override;

    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* id) override;
    HRESULT STDMETHODCALLTYPE
    GetConnectionPointContainer(IConnectionPointContainer** container) override;
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* listener, DWORD* cookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** /*connections*/) override {
        return E_NOTIMPL;
    }

protected:
    EventSource() = default;
    ~EventSource() = default;

    /// Requests are answered while it is open.
    void open(bool isOpen);
    bool isOpen();

    /// Ends what is under way, and is not open any more.
    void close();

    /// Answers a request with the setting @p resultKey, and after a success lets the script
    /// @p scriptKey follow.
    HRESULT answer(const simulator::Settings& settings, const char* resultKey,
                   const char* scriptKey);

    /// As answer() for a QR code, but the player at the scan page decides what follows.
    HRESULT answerInteractively(const simulator::Settings& settings, const std::string& controlUrl,
                                const std::string& preCode);
    void leaveScanPage();

    /// What comes after the end, if the settings want it.
    void playLate(const simulator::Settings& settings);

private:
    using Thread = std::shared_ptr<EventThread>;

    HRESULT answerAndThen(HRESULT result, const std::function<void(const Thread&)>& follow);

    /// Null when the system has no thread to give. Called with the lock held.
    Thread startedThread();

    /// A listener has come; its Advise has not returned yet.
    void onAdvised(const simulator::Settings& settings);

    std::shared_ptr<Listeners> mListeners = std::make_shared<Listeners>();
    Lock mLock; // guards what follows
    bool mIsOpen = false;
    Thread mThread;
    std::unique_ptr<simulator::PlayerDesk> mDesk;
};

/// The component's object: answers requests at once, unless it is told to be slow, and lets the
/// scripted events follow.
class OpenSDK final : public IKZOpenSDK, public EventSource {
public:
    /// A new object, or the process's one when the settings say so; with one reference, which
    /// belongs to the caller.
    static OpenSDK* make();

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

private:
    OpenSDK() = default;
    ~OpenSDK() { close(); }

    /// A request has come: takes the time that it is told to take.
    simulator::Settings takeTime();

    const LiveObject mLive;
    std::atomic<ULONG> mReferences{1};
    std::atomic<long> mInside{0}; // requests
};

} // namespace vesk::kzsim

#endif
