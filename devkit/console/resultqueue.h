#ifndef VESK_DEVKIT_CONSOLE_RESULTQUEUE_H
#define VESK_DEVKIT_CONSOLE_RESULTQUEUE_H

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <variant>

#include "vesk/vesklogin.h"

/// Any result that the SDK can deliver.
using Result = std::variant<Braxel::VESK::VESKLoginRet, Braxel::VESK::VESKBaseRet,
                            Braxel::VESK::VESKQrCodeRet>;

/// Carries results from the SDK's threads to the main thread: the observer, called on whatever
/// thread has produced the result, only copies the record into a queue.
class ResultQueue final : public Braxel::VESK::VESKLoginObserver {
public:
    void OnLoginRetNotify(const Braxel::VESK::VESKLoginRet& ret) override;
    void OnBaseRetNotify(const Braxel::VESK::VESKBaseRet& ret) override;
    void OnQrCodeRetNotify(const Braxel::VESK::VESKQrCodeRet& ret) override;

    /// The oldest result that has not been taken out; nothing when none has come by @p deadline.
    std::optional<Result> waitFor(std::chrono::steady_clock::time_point deadline);

private:
    void push(Result result);

    std::mutex mMutex;
    std::condition_variable mArrived;
    std::deque<Result> mResults;
};

#endif
