#ifndef VESK_FOUNDATION_TASK_MANAGER_VESKTASKMANAGER_H
#define VESK_FOUNDATION_TASK_MANAGER_VESKTASKMANAGER_H

#include <map>
#include <memory>
#include <string>

#include "foundation/lifecycle/vesklifecycleable.h"
#include "foundation/task/vesktask.h"
#include "module/veskmutex.h"
#include "module/vesksingleton.h"

namespace Braxel {
namespace VESK {

class VESKTaskManager;
class VESKThreadTimer;

/// Its destructor writes log lines.
template <>
inline constexpr bool kReleasedAtUnload<VESKTaskManager> = false;

/// Runs named tasks from one timer that ticks every 60 seconds. Of its two locks, for the timer
/// and for the tasks, it never holds both.
class VESKTaskManager : public VESKLifeCycleAble {
public:
    static VESKTaskManager* GetInstance() { return VESKSingleton<VESKTaskManager>::GetInstance(); }

    VESKTaskManager() = default;
    ~VESKTaskManager() override;

    void onResume() override;
    void onPause() override;

    virtual void StartTimer();

    /// StopTimer() for good: StartTimer() does nothing from then on.
    void Shutdown();

    /// Does not wait: a tick that is running goes on to its end.
    virtual void StopTimer();

    /// Takes ownership of @p task and first runs it one interval from now. A task of the same name
    /// is replaced. Does not start the timer.
    virtual void AddTask(VESKTask* task);

    virtual void RemoveTask(std::string name);

    /// The timer's callback. A tick of a timer that has been dropped does nothing.
    static void onTaskTimer(void* context, VESKThreadTimer* timer);

    /// One tick: runs each task that is due, in the order of the names.
    void RunLoop();

private:
    void DropTimer();

    bool mShutdown = false;
    VESKThreadTimer* mTimer = nullptr; // the timer deletes itself once it has been started
    VESKMutex mTaskMutex;
    VESKMutex mTimerMutex;
    std::map<std::string, std::unique_ptr<VESKTask>> mTasks;
};

} // namespace VESK
} // namespace Braxel

#endif
