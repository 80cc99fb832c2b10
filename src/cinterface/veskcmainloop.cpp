#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <memory>
#include <thread>
#include <utility>

#include "cinterface/veskcrecords.h"
#include "foundation/lifecycle/veskactivity.h"
#include "login/veskguarded.h"
#include "mainloop/veskadvice.h"
#include "mainloop/veskmainloop.h"
#include "module/veskmodule.h"
#include "vesk/vesk_mainloop.h"

using Braxel::VESK::VESKActivity;
using Braxel::VESK::VESKAdvice;
using Braxel::VESK::VESKHeldResult;
using Braxel::VESK::VESKMainLoop;
using Braxel::VESK::VESKModule;

namespace {

// Programs are compiled against this layout: it may grow at its end only.
static_assert(offsetof(vesk_result, login) == 16 && sizeof(vesk_result) == 40,
              "the layout of vesk_result has changed");
static_assert(offsetof(vesk_login_state, token_expire) == 16 &&
                  offsetof(vesk_login_state, running) == 296 && sizeof(vesk_login_state) == 304,
              "the layout of vesk_login_state has changed");
static_assert(offsetof(vesk_advice, cause_name) == 16 && sizeof(vesk_advice) == 40,
              "the layout of vesk_advice has changed");

/// Runs @p body unless the SDK has ended. Without a word in the log: a frame may be waiting.
template <typename Body>
int32_t Quietly(const Body& body) noexcept {
    const VESKModule::Use use;
    try {
        return !Braxel::VESK::HasEnded() && body() ? 1 : 0;
    } catch (...) { // NOLINT(bugprone-empty-catch): for want of memory, as the caller sees
    }
    return 0;
}

} // namespace

int32_t vesk_queue_results(int32_t on) {
    return Quietly([&] { return VESKMainLoop::GetInstance()->Switch(on != 0); });
}

int32_t vesk_next_result(vesk_result** result) {
    if (result == nullptr) {
        return 0;
    }
    *result = nullptr;
    return Quietly([&] {
        VESKMainLoop* loop = VESKMainLoop::Existing();
        if (loop == nullptr || !loop->HasResult()) {
            return false;
        }
        auto held = std::make_unique<VESKHeldResult>(); // first: without memory the result waits on
        if (!held->Hold(loop->Next())) {
            return false; // another thread has taken it
        }
        *result = held.release();
        return true;
    });
}

void vesk_result_free(vesk_result* result) {
    const VESKModule::Use use;
    delete static_cast<VESKHeldResult*>(result);
}

int32_t vesk_cancel_login(void) {
    return Quietly([] {
        VESKMainLoop* loop = VESKMainLoop::Existing();
        return loop != nullptr && loop->CancelLogin();
    });
}

void vesk_set_login_timeout(uint32_t milliseconds) {
    Quietly([&] {
        VESKMainLoop::GetInstance()->SetLoginTimeout(milliseconds);
        return true;
    });
}

int32_t vesk_wait_idle(uint32_t milliseconds) {
    return Quietly([&] {
        using std::chrono::steady_clock;
        const auto until = steady_clock::now() + std::chrono::milliseconds(milliseconds);
        for (;;) {
            VESKMainLoop* loop = VESKMainLoop::Existing();
            // In this order: what the loop has done is under way elsewhere by then.
            if ((loop == nullptr || !loop->IsBusy()) && !VESKActivity::Any()) {
                return true;
            }
            if (Braxel::VESK::HasEnded() || steady_clock::now() >= until) {
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    });
}

int32_t vesk_state(vesk_login_state* state) {
    if (state == nullptr || state->struct_size < offsetof(vesk_login_state, channel)) {
        return 0;
    }
    return Quietly([&] {
        vesk_login_state now = {};
        VESKMainLoop::GetInstance()->GetState(now);
        now.struct_size = state->struct_size;
        std::memcpy(state, &now, std::min<size_t>(state->struct_size, sizeof now));
        return true;
    });
}

int32_t vesk_describe(int32_t ret_code, int32_t third_code, vesk_advice* advice) {
    const VESKModule::Use use;
    if (advice == nullptr ||
        advice->struct_size < offsetof(vesk_advice, remedy) + sizeof advice->remedy) {
        return 0;
    }
    const VESKAdvice& row = VESKAdvice::Of(ret_code, third_code);
    advice->cause = row.cause;
    advice->can_retry = row.retryAfter >= 0 ? 1 : 0;
    advice->retry_after_ms = static_cast<uint32_t>(std::max(row.retryAfter, 0));
    advice->cause_name = row.CauseName();
    advice->meaning = row.meaning;
    advice->remedy = row.remedy;
    return VESKAdvice::OfResult(ret_code).IsForOthers() ? 0 : 1;
}
