#ifndef VESK_TESTS_SUPPORT_RECORDINGOBSERVER_H
#define VESK_TESTS_SUPPORT_RECORDINGOBSERVER_H

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "vesk/vesklogin.h"

namespace vesk::test {

/// A result as the game heard it.
template <typename Ret>
struct Heard {
    Ret ret;
    std::thread::id thread;
};

/// The results of one kind.
template <typename Ret>
class HeardResults {
public:
    void add(const Ret& ret) {
        const std::lock_guard<std::mutex> lock(mMutex);
        mList.push_back({ret, std::this_thread::get_id()});
        mArrived.notify_all();
    }
    /// The next one that no earlier call has returned. Throws when it does not come.
    Heard<Ret> next() {
        std::unique_lock<std::mutex> lock(mMutex);
        if (!mArrived.wait_for(lock, std::chrono::seconds(20), [&] { return !mList.empty(); })) {
            throw std::runtime_error("no result came");
        }
        Heard<Ret> first = std::move(mList.front());
        mList.pop_front();
        ++mTaken;
        return first;
    }
    size_t count() const {
        const std::lock_guard<std::mutex> lock(mMutex);
        return mTaken + mList.size();
    }

private:
    mutable std::mutex mMutex;
    std::condition_variable mArrived;
    std::deque<Heard<Ret>> mList; ///< that nobody has taken yet
    size_t mTaken = 0;
};

/// Keeps a copy of every result until somebody takes it.
class RecordingObserver final : public Braxel::VESK::VESKLoginObserver {
public:
    void OnLoginRetNotify(const Braxel::VESK::VESKLoginRet& ret) override { mLogins.add(ret); }
    void OnBaseRetNotify(const Braxel::VESK::VESKBaseRet& ret) override { mBases.add(ret); }
    void OnQrCodeRetNotify(const Braxel::VESK::VESKQrCodeRet& ret) override { mQrCodes.add(ret); }

    auto nextLogin() { return mLogins.next(); }
    auto nextBase() { return mBases.next(); }
    auto nextQrCode() { return mQrCodes.next(); }
    size_t loginCount() const { return mLogins.count(); }
    size_t baseCount() const { return mBases.count(); }

private:
    HeardResults<Braxel::VESK::VESKLoginRet> mLogins;
    HeardResults<Braxel::VESK::VESKBaseRet> mBases;
    HeardResults<Braxel::VESK::VESKQrCodeRet> mQrCodes;
};

/// Calls back into the SDK from inside the results.
class ActingObserver final : public Braxel::VESK::VESKLoginObserver {
public:
    std::function<void(const Braxel::VESK::VESKLoginRet&)> onLogin = [](const auto&) {};
    std::function<void(const Braxel::VESK::VESKBaseRet&)> onBase = [](const auto&) {};

    void OnLoginRetNotify(const Braxel::VESK::VESKLoginRet& ret) override { onLogin(ret); }
    void OnBaseRetNotify(const Braxel::VESK::VESKBaseRet& ret) override { onBase(ret); }
    void OnQrCodeRetNotify(const Braxel::VESK::VESKQrCodeRet&) override {}
};

} // namespace vesk::test

#endif
