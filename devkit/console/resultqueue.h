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

/// Carries results from the SDK's threads to the game's main thread.
///
/// The SDK calls the observer on whatever thread has produced the result, so the observer only
/// copies the record into a queue. The main thread takes the results out and does the work: a game
/// calls poll() once a frame; this program has nothing else to do and calls waitFor().
class ResultQueue final : public Braxel::VESK::VESKLoginObserver {
public:
    void OnLoginRetNotify(const Braxel::VESK::VESKLoginRet& ret) override;
    void OnBaseRetNotify(const Braxel::VESK::VESKBaseRet& ret) override;
    void OnQrCodeRetNotify(const Braxel::VESK::VESKQrCodeRet& ret) override;

    /// The oldest result that has not been taken out; nothing when there is none. Never waits.
    std::optional<Result> poll();

    /// As poll(), but waits for a result until @p deadline.
    std::optional<Result> waitFor(std::chrono::steady_clock::time_point deadline);

private:
    void push(Result result);
    std::optional<Result> takeOldest();

    std::mutex mMutex;
    std::condition_variable mArrived;
    std::deque<Result> mResults;
};

#endif
