#include "foundation/lifecycle/veskobservermanager.h"

#include "foundation/log/vesklogger.h"
#include "module/veskmutex.h"

namespace Braxel {
namespace VESK {

void VESKObserverManager::AddObserver(VESKLifeCycleAble* observer) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    if (!mObservers.insert(observer).second) {
        VESK_LOG_DEBUG("VESKObserverManager::AddObserver", "already in set, no need insert again");
    }
}

void VESKObserverManager::RemoveObserver(VESKLifeCycleAble* observer) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    if (mObservers.erase(observer) == 0) {
        VESK_LOG_DEBUG("VESKObserverManager::RemoveObserver", "not found, ignore this operate");
    }
}

} // namespace VESK
} // namespace Braxel
