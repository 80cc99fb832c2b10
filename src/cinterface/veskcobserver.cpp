#include "cinterface/veskcobserver.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <mutex>

#include "cinterface/veskcrecords.h"

namespace Braxel {
namespace VESK {

namespace {

// Programs are compiled against this layout: the struct may grow at its end only.
static_assert(offsetof(vesk_login_observer, user) == 8 &&
                  offsetof(vesk_login_observer, on_login) == 16 &&
                  offsetof(vesk_login_observer, on_qr_code) == 32,
              "the layout of vesk_login_observer has changed");

constexpr size_t kSmallestObserver = offsetof(vesk_login_observer, on_base);

/// Converts and calls, with a copy of the observer: no lock may be held during the call.
template <typename Function, typename Ret>
void Deliver(Function function, void* user, const Ret& ret) {
    if (function != nullptr) {
        const auto record = ToC(ret);
        function(&record, user);
    }
}

} // namespace

bool VESKCObserver::Set(const vesk_login_observer* observer) {
    vesk_login_observer copy = {};
    if (observer != nullptr) {
        // Rounded down to whole members: half a function's address is none.
        const size_t size = observer->struct_size - observer->struct_size % sizeof(void*);
        if (size < kSmallestObserver) {
            return false;
        }
        std::memcpy(&copy, observer, std::min(size, sizeof copy));
    }
    const std::lock_guard<VESKMutex> lock(mMutex);
    mObserver = copy;
    return true;
}

vesk_login_observer VESKCObserver::Current() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    return mObserver;
}

void VESKCObserver::OnLoginRetNotify(const VESKLoginRet& ret) {
    const vesk_login_observer observer = Current();
    Deliver(observer.on_login, observer.user, ret);
}

void VESKCObserver::OnBaseRetNotify(const VESKBaseRet& ret) {
    const vesk_login_observer observer = Current();
    Deliver(observer.on_base, observer.user, ret);
}

void VESKCObserver::OnQrCodeRetNotify(const VESKQrCodeRet& ret) {
    const vesk_login_observer observer = Current();
    Deliver(observer.on_qr_code, observer.user, ret);
}

} // namespace VESK
} // namespace Braxel
