#ifndef VESK_FOUNDATION_TASK_VESKTASK_H
#define VESK_FOUNDATION_TASK_VESKTASK_H

#include <cstdint>
#include <string>

namespace Braxel {
namespace VESK {

/// A piece of work that the task manager repeats. Times are whole Unix seconds.
class VESKTask {
public:
    VESKTask() = default;
    VESKTask(const VESKTask&) = delete;
    VESKTask& operator=(const VESKTask&) = delete;
    virtual ~VESKTask() = default;

    /// Runs with the task manager's lock held: it must not add or remove tasks.
    virtual void DoTask() = 0;

    virtual std::string GetTaskName() = 0;

    /// The least number of seconds between two runs.
    virtual uint32_t GetInterval() = 0;

    virtual uint32_t GetLastRunTime();
    virtual void SetLastRunTime(uint32_t seconds);

    /// Makes now the last run time and returns it.
    virtual uint32_t UpdateLastRunTime();

private:
    uint32_t mLastRunTime = 0;
};

} // namespace VESK
} // namespace Braxel

#endif
