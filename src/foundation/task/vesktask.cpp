#include "foundation/task/vesktask.h"

#include "platformimpl/foundation/os/clock.h"

namespace Braxel {
namespace VESK {

uint32_t VESKTask::GetLastRunTime() {
    return mLastRunTime;
}

void VESKTask::SetLastRunTime(uint32_t seconds) {
    mLastRunTime = seconds;
}

uint32_t VESKTask::UpdateLastRunTime() {
    mLastRunTime = static_cast<uint32_t>(os::UnixSeconds());
    return mLastRunTime;
}

} // namespace VESK
} // namespace Braxel
