#ifndef VESK_FOUNDATION_LIFECYCLE_VESKOBSERVERMANAGER_H
#define VESK_FOUNDATION_LIFECYCLE_VESKOBSERVERMANAGER_H

#include <set>

#include "module/veskmutex.h"
#include "module/vesksingleton.h"

namespace Braxel {
namespace VESK {

class VESKLifeCycleAble;

/// The registry of the objects that follow the application's lifecycle. It does not own them.
class VESKObserverManager {
public:
    static VESKObserverManager* GetInstance() {
        return VESKSingleton<VESKObserverManager>::GetInstance();
    }

    void AddObserver(VESKLifeCycleAble* observer);
    void RemoveObserver(VESKLifeCycleAble* observer);

private:
    friend class VESKSingleton<VESKObserverManager>;
    VESKObserverManager() = default;

    VESKMutex mMutex;
    std::set<VESKLifeCycleAble*> mObservers;
};

} // namespace VESK
} // namespace Braxel

#endif
