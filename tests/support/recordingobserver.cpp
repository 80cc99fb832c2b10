#include "recordingobserver.h"

#include <stdexcept>

using Braxel::VESK::VESKBaseRet;
using Braxel::VESK::VESKLoginRet;
using Braxel::VESK::VESKQrCodeRet;

namespace vesk::test {

void RecordingObserver::OnLoginRetNotify(const VESKLoginRet& ret) {
    record(mLogins, ret);
}
void RecordingObserver::OnBaseRetNotify(const VESKBaseRet& ret) {
    record(mBases, ret);
}
void RecordingObserver::OnQrCodeRetNotify(const VESKQrCodeRet& ret) {
    record(mQrCodes, ret);
}

Heard<VESKLoginRet> RecordingObserver::nextLogin() {
    return next(mLogins, mLoginsTaken);
}
Heard<VESKBaseRet> RecordingObserver::nextBase() {
    return next(mBases, mBasesTaken);
}

Heard<VESKQrCodeRet> RecordingObserver::nextQrCode() {
    return next(mQrCodes, mQrCodesTaken);
}

size_t RecordingObserver::loginCount() const {
    const std::lock_guard<std::mutex> lock(mMutex);
    return mLogins.size();
}

size_t RecordingObserver::baseCount() const {
    const std::lock_guard<std::mutex> lock(mMutex);
    return mBases.size();
}

template <typename Ret>
void RecordingObserver::record(std::vector<Heard<Ret>>& list, const Ret& ret) {
    const std::lock_guard<std::mutex> lock(mMutex);
    list.push_back({ret, std::this_thread::get_id()});
    mArrived.notify_all();
}

template <typename Ret>
Heard<Ret> RecordingObserver::next(const std::vector<Heard<Ret>>& list, size_t& taken) {
    std::unique_lock<std::mutex> lock(mMutex);
    if (!mArrived.wait_for(lock, std::chrono::seconds(20), [&] { return list.size() > taken; })) {
        throw std::runtime_error("no result came");
    }
    return list[taken++];
}

} // namespace vesk::test
