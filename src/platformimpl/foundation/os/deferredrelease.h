#ifndef VESK_PLATFORMIMPL_FOUNDATION_OS_DEFERREDRELEASE_H
#define VESK_PLATFORMIMPL_FOUNDATION_OS_DEFERREDRELEASE_H

#include <functional>

namespace Braxel {
namespace VESK {
namespace os {

/// Runs @p release at once when @p idle says so, otherwise on a thread of its own as soon as it
/// does. For unloading a component whose own code may be further up on some stack. When no thread
/// can be had, @p release is not run: a component that stays loaded does no harm.
void ReleaseWhenIdle(std::function<bool()> idle, std::function<void()> release);

} // namespace os
} // namespace VESK
} // namespace Braxel

#endif
