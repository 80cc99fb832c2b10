#ifndef VESK_FOUNDATION_LIFECYCLE_VESKLIFECYCLEABLE_H
#define VESK_FOUNDATION_LIFECYCLE_VESKLIFECYCLEABLE_H

#include <string>

namespace Braxel {
namespace VESK {

/// Base of the objects that follow the host application's lifecycle. It is registered for as long
/// as it lives.
class VESKLifeCycleAble {
public:
    VESKLifeCycleAble();
    VESKLifeCycleAble(const VESKLifeCycleAble&) = delete;
    VESKLifeCycleAble& operator=(const VESKLifeCycleAble&) = delete;

    /// Calls the handler of the name @p tag, "onCreate" to "onStop", exactly so.
    virtual void Change(const std::string& tag);

    virtual ~VESKLifeCycleAble();

    virtual void onCreate() {}
    virtual void onStart() {}
    virtual void onResume() {}
    virtual void onPause() {}
    virtual void onStop() {}
};

} // namespace VESK
} // namespace Braxel

#endif
