#ifndef VESK_DEVKIT_CONSOLE_RESULTQUEUE_H
#define VESK_DEVKIT_CONSOLE_RESULTQUEUE_H

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>
#include <variant>

#include "vesk/vesklogin.h"

/// Any result that the SDK can deliver.
using Result = std::variant<Braxel::VESK::VESKLoginRet, Braxel::VESK::VESKBaseRet,
                            Braxel::VESK::VESKQrCodeRet>;

/// Carries results from the SDK's threads to the main thread: the observer, called on whatever
/// thread has produced the result, only copies the record into a queue.
class ResultQueue final : public Braxel::VESK::VESKLoginObserver {
public:
    // The record is the SDK's own and lives for the call only: push() gets a copy.
    void OnLoginRetNotify(const Braxel::VESK::VESKLoginRet& ret) override { push(ret); }
    void OnBaseRetNotify(const Braxel::VESK::VESKBaseRet& ret) override { push(ret); }
    void OnQrCodeRetNotify(const Braxel::VESK::VESKQrCodeRet& ret) override { push(ret); }

    /// The oldest result that has not been taken out; nothing when none has come by @p deadline.
    std::optional<Result> waitFor(std::chrono::steady_clock::time_point deadline) {
        std::unique_lock<std::mutex> lock(mMutex);
        if (!mArrived.wait_until(lock, deadline, [this] { return !mResults.empty(); })) {
            return std::nullopt;
        }
        Result oldest = std::move(mResults.front());
        mResults.pop_front();
        return oldest;
    }

private:
    void push(Result result) {
        const std::lock_guard<std::mutex> lock(mMutex);
        mResults.push_back(std::move(result));
        mArrived.notify_one();
    }

    std::mutex mMutex;
    std::condition_variable mArrived;
    std::deque<Result> mResults;
};

#endif
