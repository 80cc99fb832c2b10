#include "resultqueue.h"

#include <utility>

using Braxel::VESK::VESKBaseRet;
using Braxel::VESK::VESKLoginRet;
using Braxel::VESK::VESKQrCodeRet;

// The record is the SDK's own and lives for the call only: push() gets a copy.
void ResultQueue::OnLoginRetNotify(const VESKLoginRet& ret) {
    push(ret);
}
void ResultQueue::OnBaseRetNotify(const VESKBaseRet& ret) {
    push(ret);
}
void ResultQueue::OnQrCodeRetNotify(const VESKQrCodeRet& ret) {
    push(ret);
}

std::optional<Result> ResultQueue::waitFor(std::chrono::steady_clock::time_point deadline) {
    std::unique_lock<std::mutex> lock(mMutex);
    mArrived.wait_until(lock, deadline, [this] { return !mResults.empty(); });
    if (mResults.empty()) {
        return std::nullopt;
    }
    Result oldest = std::move(mResults.front());
    mResults.pop_front();
    return oldest;
}

void ResultQueue::push(Result result) {
    const std::lock_guard<std::mutex> lock(mMutex);
    mResults.push_back(std::move(result));
    mArrived.notify_one();
}
