#ifndef VESK_DEVKIT_SIMULATORS_KZ_CONNECTIONPOINT_H
#define VESK_DEVKIT_SIMULATORS_KZ_CONNECTIONPOINT_H

#include <ocidl.h>

#include "listeners.h"
#include "simulator.h"

namespace vesk::kzsim {

class OpenSDK;

/// Whether the events are a dispinterface.
bool firesThroughDispatch(const simulator::Settings& settings);

/// Where listeners are advised. A part of the component's object: a reference on the one is a
/// reference on the other.
class ConnectionPoint final : public IConnectionPoint {
public:
    ConnectionPoint(OpenSDK& owner, Listeners& listeners) : mOwner(owner), mListeners(listeners) {}
    ConnectionPoint(const ConnectionPoint&) = delete;
    ConnectionPoint& operator=(const ConnectionPoint&) = delete;

    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;

    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* id) override;
    HRESULT STDMETHODCALLTYPE
    GetConnectionPointContainer(IConnectionPointContainer** container) override;
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* listener, DWORD* cookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override;

private:
    OpenSDK& mOwner;
    Listeners& mListeners;
};

} // namespace vesk::kzsim

#endif
