#ifndef VESK_SIMULATORS_KZ_CLASS_FACTORY_H
#define VESK_SIMULATORS_KZ_CLASS_FACTORY_H

#include "comsupport.h"
#include "server.h"

namespace vesk::kzsim {

/// Makes the component's object.
class ClassFactory final : public Braxel::VESK::ComObject<IClassFactory> {
public:
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL locks) override;

protected:
    const IID& InterfaceId() const override { return IID_IClassFactory; }

private:
    ~ClassFactory() override = default;

    const LiveObject mLive;
};

} // namespace vesk::kzsim

#endif
