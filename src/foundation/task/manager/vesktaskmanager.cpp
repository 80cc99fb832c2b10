#include "foundation/task/manager/vesktaskmanager.h"

#include "foundation/log/vesklogger.h"
#include "foundation/task/timer/veskthreadtimer.h"
#include "module/veskmutex.h"
#include "platformimpl/foundation/os/clock.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr double kTickSeconds = 60.0;

} // namespace

VESKTaskManager::~VESKTaskManager() {
    {
        const std::lock_guard<VESKMutex> lock(mTaskMutex);
        mTasks.clear();
    }
    DropTimer();
}

void VESKTaskManager::onResume() {
    VESK_LOG_DEBUG("VESKTaskManager::onResume", "VESKTaskManager::onResume ..");
    StartTimer();
}

void VESKTaskManager::onPause() {
    VESK_LOG_DEBUG("VESKTaskManager::onPause", "VESKTaskManager::onPause ..");
    StopTimer();
}

void VESKTaskManager::StartTimer() {
    const std::lock_guard<VESKMutex> lock(mTimerMutex);
    if (mShutdown) {
        return;
    }
    if (mTimer == nullptr) {
        VESK_LOG_DEBUG("VESKTaskManager::StartTimer", "will create a ThreadTimer");
        mTimer = new VESKThreadTimer;
        mTimer->interval = kTickSeconds;
        mTimer->callback = &onTaskTimer;
        mTimer->context = this;
    }
    VESK_LOG_DEBUG("VESKTaskManager::StartTimer", "task manager start");
    mTimer->start();
}

void VESKTaskManager::StopTimer() {
    DropTimer();
}

void VESKTaskManager::Shutdown() {
    {
        const std::lock_guard<VESKMutex> lock(mTimerMutex);
        mShutdown = true;
    }
    StopTimer();
}

void VESKTaskManager::DropTimer() {
    const std::lock_guard<VESKMutex> lock(mTimerMutex);
    VESK_LOG_DEBUG("VESKTaskManager::StopTimer", "task manager stop");
    if (mTimer != nullptr) {
        mTimer->stop();
        mTimer = nullptr;
    } else {
        VESK_LOG_DEBUG("VESKTaskManager::StopTimer", "task manager timer is empty");
    }
}

void VESKTaskManager::AddTask(VESKTask* task) {
    if (task == nullptr) {
        VESK_LOG_DEBUG("VESKTaskManager::AddTask", "add task is null");
        return;
    }
    const std::string name = task->GetTaskName();
    if (name.empty()) {
        // Deliberate: the refused task is not deleted.
        VESK_LOG_DEBUG("VESKTaskManager::AddTask", "add task name is empty");
        return;
    }
    const std::lock_guard<VESKMutex> lock(mTaskMutex);
    if (mTasks.erase(name) != 0) {
        VESK_LOG_DEBUG("VESKTaskManager::AddTask", "same name task,delete old task");
    }
    VESK_LOG_DEBUG("VESKTaskManager::AddTask", "add task success :%s", name.c_str());
    task->UpdateLastRunTime();
    mTasks[name].reset(task);
}

void VESKTaskManager::RemoveTask(std::string name) {
    if (name.empty()) {
        VESK_LOG_DEBUG("VESKTaskManager::RemoveTask", "remove task name is null");
        return;
    }
    const std::lock_guard<VESKMutex> lock(mTaskMutex);
    const auto found = mTasks.find(name);
    if (found == mTasks.end()) {
        VESK_LOG_DEBUG("VESKTaskManager::RemoveTask", "no find this task :%s", name.c_str());
        return;
    }
    VESK_LOG_DEBUG("VESKTaskManager::RemoveTask", "remove task success :%s", name.c_str());
    mTasks.erase(found);
}

void VESKTaskManager::onTaskTimer(void* context, VESKThreadTimer* timer) {
    VESK_LOG_DEBUG("VESKTaskManager::onTaskTimer", "on task timer");
    if (context == nullptr) {
        VESK_LOG_DEBUG("VESKTaskManager::onTaskTimer", "context is empty!");
        return;
    }
    VESKTaskManager* manager = static_cast<VESKTaskManager*>(context);
    {
        const std::lock_guard<VESKMutex> lock(manager->mTimerMutex);
        if (timer != manager->mTimer) {
            VESK_LOG_DEBUG("VESKTaskManager::onTaskTimer", "this timer is stop, it do nothing");
            return;
        }
    }
    manager->RunLoop();
}

void VESKTaskManager::RunLoop() {
    VESK_LOG_DEBUG("VESKTaskManager::RunLoop", "task manager will traverse task map");
    const int64_t now = os::UnixSeconds();
    const std::lock_guard<VESKMutex> lock(mTaskMutex);
    for (const auto& entry : mTasks) {
        VESKTask* task = entry.second.get();
        if (task == nullptr) {
            continue;
        }
        const int64_t elapsed = now - static_cast<int64_t>(task->GetLastRunTime());
        if (elapsed >= static_cast<int64_t>(task->GetInterval())) {
            VESK_LOG_DEBUG("VESKTaskManager::RunLoop", "task manager do task");
            task->UpdateLastRunTime();
            task->DoTask();
        }
    }
}

} // namespace VESK
} // namespace Braxel
