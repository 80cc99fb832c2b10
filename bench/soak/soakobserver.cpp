#include "soakobserver.h"

#include <chrono>
#include <stdexcept>

using Braxel::VESK::VESKBaseRet;
using Braxel::VESK::VESKLoginRet;

namespace vesk::soak {

template <typename Ret>
void SoakObserver::keep(Ret& last, long& count, const Ret& ret) {
    const std::lock_guard<std::mutex> lock(mMutex);
    last = ret;
    ++count;
    mArrived.notify_all();
}

template <typename Ret>
Ret SoakObserver::wait(const Ret& last, const long& count, long wanted) {
    std::unique_lock<std::mutex> lock(mMutex);
    if (!mArrived.wait_for(lock, std::chrono::seconds(30), [&] { return count >= wanted; })) {
        throw std::runtime_error("a result has not come");
    }
    return last;
}

void SoakObserver::OnLoginRetNotify(const VESKLoginRet& ret) {
    keep(mLogin, mLogins, ret);
}

void SoakObserver::OnBaseRetNotify(const VESKBaseRet& ret) {
    keep(mBase, mBases, ret);
}

long SoakObserver::logins() const {
    const std::lock_guard<std::mutex> lock(mMutex);
    return mLogins;
}

long SoakObserver::bases() const {
    const std::lock_guard<std::mutex> lock(mMutex);
    return mBases;
}

VESKLoginRet SoakObserver::waitForLogin(long count) {
    return wait(mLogin, mLogins, count);
}

VESKBaseRet SoakObserver::waitForBase(long count) {
    return wait(mBase, mBases, count);
}

} // namespace vesk::soak
