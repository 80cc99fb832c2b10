#ifndef VESK_MAINLOOP_VESKMAINLOOP_H
#define VESK_MAINLOOP_VESKMAINLOOP_H

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>

#include "common/veskinnerrecords.h"
#include "login/veskresultsink.h"
#include "mainloop/veskresultqueue.h"
#include "module/veskmutex.h"
#include "module/vesksingleton.h"
#include "vesk/vesk_mainloop.h"

namespace Braxel {
namespace VESK {

/// The game's main loop's way into the SDK: operations run in their order on a worker thread, and
/// results wait until they are taken. Any thread may call it; but for Worker() nothing in here
/// waits, writes to the log or touches the disk, since a frame may be waiting.
class VESKMainLoop final : public VESKResultSink {
public:
    static VESKMainLoop* GetInstance() { return VESKSingleton<VESKMainLoop>::GetInstance(); }
    static VESKMainLoop* Existing() { return VESKSingleton<VESKMainLoop>::Existing(); }

    /// An operation with its texts.
    struct Call {
        enum class Kind { kLogin, kAutoLogin, kLogout };
        Kind kind = Kind::kLogin;
        std::string channel;
        std::string permissions;
        std::string subChannel;
        std::string extraJson;
        bool channelOnly = false;
        uint64_t request = 0; ///< 0 for one that the observer hears the result of
    };

    bool Switch(bool on);

    /// Takes the operation over, to be run on the worker.
    /// @return false when the mode is off: the caller runs it.
    bool Take(Call call);

    /// Whether a result waits.
    bool HasResult();
    /// Null when none does.
    std::unique_ptr<VESKResult> Next();
    bool CancelLogin();
    void SetLoginTimeout(uint32_t milliseconds);
    void GetState(vesk_login_state& state);

    /// Whether operations or a login that does not wait for its player are under way.
    bool IsBusy();

    bool OnLogin(const VESKLoginRet& ret, const char* seqID) override;
    bool OnBase(const VESKBaseRet& ret, const char* seqID) override;
    bool OnQrCode(const VESKQrCodeRet& ret, const char* seqID) override;

private:
    friend class VESKSingleton<VESKMainLoop>;
    using Clock = std::chrono::steady_clock;

    /// The one login that runs, from the call to its result.
    struct Login {
        uint64_t request = 0; ///< 0: none runs
        std::string seqID;    ///< once the worker has begun it
        std::string channel;
        bool waitsForScan = false;
        Clock::time_point ends = Clock::time_point::max();
    };

    // What the game hears is what it hears of a request that runs out of memory: libcurl's code.
    static constexpr int32_t kOutOfMemory = 27;
    static constexpr const char* kNoMemory = "memory has run out";

    VESKMainLoop() = default;
    void OnLoginBegun(const std::string& seqID) override;
    void OnLoginAnswer() override;
    void OnRefreshed() override;
    void OnSilence(const std::string& seqID) override;
    void OnLost(const std::string& seqID) noexcept override;
    void OnEnd() override;

    static void Worker(void* mainLoop);
    void Listen();
    void Run(const Call& call);
    void Fail(const Call& call);
    bool Begins(const Call& call, const std::string& seqID);

    // With mMutex held.
    bool EndLogin(int32_t code, const char* message, bool logOut, int32_t thirdCode = -1);
    bool Number(Call& call);
    void Finish(Login& login, int32_t code, const char* message, int32_t thirdCode = -1);
    void FinishStored();
    bool IsHeldBack(const Login& login) const;
    void Forget(Login& login);
    void EndRun(const char* seqID);
    void Settle();
    bool HasFinished(const char* seqID) const;

    VESKMutex mMutex; // guards what follows; never held while anything else is called that may wait
    VESKCondition mCalled;
    bool mOn = false;
    bool mEnded = false;
    bool mHasWorker = false;
    bool mListens = false; // the worker's own
    bool mWorks = false;   // the worker is inside an operation
    std::list<Call> mCalls;
    VESKResultQueue mResults;
    uint64_t mLastRequest = 0;
    std::chrono::milliseconds mTimeout{300000};
    Login mLogin;
    Login mStored;                          // overtaken, but its success is stored and on its way
    std::array<std::string, 256> mFinished; // the latest logins of this mode that have ended
    size_t mFinishedCount = 0;
    std::string mRunning; // the login that has begun last, anybody's, until its result
    std::map<std::string, uint64_t, std::less<>> mLogouts; // their numbers, by sequence id
    uint64_t mHeldRequest = 0;                             // of the login that is held
    bool mIsRefreshed = false;                             // and that has still to be told
    std::shared_ptr<const InnerLoginRet> mExpired;         // the record of which that was told
};

} // namespace VESK
} // namespace Braxel

#endif
