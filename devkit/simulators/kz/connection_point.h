#ifndef VESK_SIMULATORS_KZ_CONNECTION_POINT_H
#define VESK_SIMULATORS_KZ_CONNECTION_POINT_H

#include <ocidl.h>

#include "sinks.h"

namespace vesk::kzsim {

class OpenSDK;
class Settings;

/// Whether the events are a dispinterface.
bool firesThroughDispatch(const Settings& settings);

/// Where listeners are advised. A part of the component's object: a reference on the one is a
/// reference on the other.
class ConnectionPoint final : public IConnectionPoint {
public:
    ConnectionPoint(OpenSDK& owner, Sinks& sinks) : mOwner(owner), mSinks(sinks) {}
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
    Sinks& mSinks;
};

} // namespace vesk::kzsim

#endif
