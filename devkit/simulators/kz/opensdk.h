#ifndef VESK_DEVKIT_SIMULATORS_KZ_OPENSDK_H
#define VESK_DEVKIT_SIMULATORS_KZ_OPENSDK_H

#include <atomic>

#include "eventsource.h"

namespace vesk::kzsim {

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
