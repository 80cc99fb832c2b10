#include "foundation/lifecycle/vesklifecycleable.h"

#include "foundation/lifecycle/veskobservermanager.h"
#include "foundation/log/vesklogger.h"

namespace Braxel {
namespace VESK {

VESKLifeCycleAble::VESKLifeCycleAble() {
    VESK_LOG_DEBUG("VESKLifeCycleAble::VESKLifeCycleAble", "%s", "VESKLifeCycleAble constructor");
    VESKObserverManager::GetInstance()->AddObserver(this);
}

VESKLifeCycleAble::~VESKLifeCycleAble() {
    VESK_LOG_DEBUG("VESKLifeCycleAble::~VESKLifeCycleAble", "%s", "VESKLifeCycleAble ~~~~ ");
    VESKObserverManager::GetInstance()->RemoveObserver(this);
}

void VESKLifeCycleAble::Change(const std::string& tag) {
    if (tag.empty()) {
        VESK_LOG_ERROR("VESKLifeCycleAble::Change", "tag must not be empty");
    } else if (tag == "onCreate") {
        onCreate();
    } else if (tag == "onResume") {
        onResume();
    } else if (tag == "onPause") {
        onPause();
    } else if (tag == "onStart") {
        onStart();
    } else if (tag == "onStop") {
        onStop();
    } else {
        VESK_LOG_DEBUG("VESKLifeCycleAble::Change", "%s have not define yet", tag.c_str());
    }
}

} // namespace VESK
} // namespace Braxel
