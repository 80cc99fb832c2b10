#include "server/shutdowngate.h"

namespace vesk::backend {

bool ShutdownGate::waitFor(std::chrono::milliseconds time) {
    std::unique_lock<std::mutex> lock(mMutex);
    return mClosing.wait_for(lock, time, [this] { return mClosed; });
}

void ShutdownGate::close() {
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mClosed = true;
    }
    mClosing.notify_all();
}

} // namespace vesk::backend
