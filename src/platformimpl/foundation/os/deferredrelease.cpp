#include "platformimpl/foundation/os/deferredrelease.h"

#include <chrono>
#include <memory>
#include <thread>

#include "platformimpl/foundation/os/thread.h"

namespace Braxel {
namespace VESK {
namespace os {

namespace {

/// Also the time in which a callback that has just ended leaves the component's code.
constexpr std::chrono::milliseconds kPoll(100);

struct Deferred {
    std::function<bool()> idle;
    std::function<void()> release;
};

void ReleaseLater(void* context) {
    const std::unique_ptr<Deferred> deferred(static_cast<Deferred*>(context));
    do {
        std::this_thread::sleep_for(kPoll);
    } while (!deferred->idle());
    std::this_thread::sleep_for(kPoll);
    deferred->release();
}

} // namespace

void ReleaseWhenIdle(std::function<bool()> idle, std::function<void()> release) {
    if (idle()) {
        release();
        return;
    }
    auto deferred = std::make_unique<Deferred>(Deferred{std::move(idle), std::move(release)});
    pthread_t thread = {};
    if (StartDetachedThread(&thread, &ReleaseLater, deferred.get()) == 0) {
        deferred.release(); // NOLINT(bugprone-unused-return-value): the thread owns it now
    }
}

} // namespace os
} // namespace VESK
} // namespace Braxel
