#ifndef VESK_TESTS_SUPPORT_RECORDINGOBSERVER_H
#define VESK_TESTS_SUPPORT_RECORDINGOBSERVER_H

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "vesk/vesklogin.h"

namespace vesk::test {

/// A result as the game heard it.
template <typename Ret>
struct Heard {
    Ret ret;
    std::thread::id thread;
};

/// Keeps a copy of every result. Its lists may be read when no call is under way.
class RecordingObserver final : public Braxel::VESK::VESKLoginObserver {
public:
    void OnLoginRetNotify(const Braxel::VESK::VESKLoginRet& ret) override;
    void OnBaseRetNotify(const Braxel::VESK::VESKBaseRet& ret) override;
    void OnQrCodeRetNotify(const Braxel::VESK::VESKQrCodeRet& ret) override;

    /// The next login result that no earlier call has returned. Throws when it does not come.
    Heard<Braxel::VESK::VESKLoginRet> nextLogin();
    /// As nextLogin(), for base results.
    Heard<Braxel::VESK::VESKBaseRet> nextBase();

    /// As nextLogin(), for QR codes.
    Heard<Braxel::VESK::VESKQrCodeRet> nextQrCode();

    size_t loginCount() const;
    size_t baseCount() const;

private:
    template <typename Ret>
    void record(std::vector<Heard<Ret>>& list, const Ret& ret);
    template <typename Ret>
    Heard<Ret> next(const std::vector<Heard<Ret>>& list, size_t& taken);

    mutable std::mutex mMutex;
    std::condition_variable mArrived;
    std::vector<Heard<Braxel::VESK::VESKLoginRet>> mLogins;
    std::vector<Heard<Braxel::VESK::VESKBaseRet>> mBases;
    std::vector<Heard<Braxel::VESK::VESKQrCodeRet>> mQrCodes;
    size_t mQrCodesTaken = 0;
    size_t mLoginsTaken = 0;
    size_t mBasesTaken = 0;
};

} // namespace vesk::test

#endif
