#include "mainloop/veskmainloop.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <utility>

#include "common/veskchannelfacts.h"
#include "login/veskloginmanager.h"
#include "platformimpl/foundation/os/clock.h"
#include "platformimpl/foundation/os/thread.h"
#include "vesk/veskerror.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr const char* kOvertaken = "a newer login has begun";
constexpr const char* kNoSuchChannel = "there is no channel of this name";

/// Whether there is somebody who can answer.
bool IsPossible(const VESKMainLoop::Call& call) {
    const VESKChannelKind kind = ChannelFacts(call.channel).kind;
    switch (call.kind) {
    case VESKMainLoop::Call::Kind::kLogin:
        return kind == VESKChannelKind::kMessenger || kind == VESKChannelKind::kDirect;
    case VESKMainLoop::Call::Kind::kLogout:
        return kind != VESKChannelKind::kUnknown || call.channel.empty();
    case VESKMainLoop::Call::Kind::kAutoLogin:
        break;
    }
    return true;
}

bool IsHeld(const InnerLoginRet& record) {
    return record.openid.length() != 0 && record.token.length() != 0;
}

bool IsExpired(const InnerLoginRet& record) {
    return record.tokenExpire != 0 && record.tokenExpire < os::UnixSeconds();
}

/// What is held now. Never creates the manager, which writes to the log.
std::shared_ptr<const InnerLoginRet> HeldRecord() {
    VESKLoginManager* manager = VESKSingleton<VESKLoginManager>::Existing();
    return manager == nullptr ? nullptr : manager->HeldRecord();
}

template <size_t N>
void CopyText(char (&to)[N], const char* text) {
    std::strncpy(to, text, N - 1);
    to[N - 1] = '\0';
}

} // namespace

// ---- The game's calls ----

bool VESKMainLoop::Switch(bool on) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    if (mEnded) {
        return false;
    }
    VESKResultSink::Set(this);
    if (on && !mHasWorker) {
        mHasWorker = os::StartDetachedThread(&Worker, this) == 0;
    }
    mOn = on && mHasWorker;
    return mOn == on;
}

bool VESKMainLoop::Take(Call call) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    if (mEnded || (!mOn && mCalls.empty() && !mWorks)) {
        return false;
    }
    std::list<Call> calls; // what may want for memory comes before the first change
    calls.push_back(std::move(call));
    if (mOn && !Number(calls.front())) {
        return true;
    } // else one that waits behind those of the mode that was switched off
    mCalls.splice(mCalls.end(), calls);
    mCalled.notify_all();
    return true;
}

/// The call gets its number, from where on it is owed an answer.
/// @return false when it has that already.
bool VESKMainLoop::Number(Call& call) {
    Settle();
    const bool isLogout = call.kind == Call::Kind::kLogout;
    const bool isPossible = IsPossible(call);
    call.request = mLastRequest + 1;
    std::string channel = call.channel;
    VESKResultQueue::Results room =
        VESKResultQueue::Room(isLogout ? VESK_RESULT_BASE : VESK_RESULT_LOGIN, call.request);
    if (isPossible && !isLogout) {
        EndLogin(VESKError::LOGIN_OVERTAKEN, kOvertaken, false);
        mLogin.request = call.request;
        mLogin.channel = std::move(channel);
        mLogin.ends = mTimeout.count() == 0 ? Clock::time_point::max() : Clock::now() + mTimeout;
    }
    ++mLastRequest;
    mResults.Owe(room);
    if (!isPossible) {
        mResults.Refuse(call.request, {VESKError::UNKNOWN_CHANNEL, kNoSuchChannel, call.channel});
    }
    return isPossible;
}

bool VESKMainLoop::HasResult() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    Settle();
    return !mResults.IsEmpty();
}

std::unique_ptr<VESKResult> VESKMainLoop::Next() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    return mResults.Pop();
}

bool VESKMainLoop::CancelLogin() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    Settle();
    return EndLogin(VESKError::LOGIN_CANCELLED, "the login was cancelled", true);
}

void VESKMainLoop::SetLoginTimeout(uint32_t milliseconds) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    mTimeout = std::chrono::milliseconds(milliseconds);
}

void VESKMainLoop::GetState(vesk_login_state& state) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    Settle();
    const std::shared_ptr<const InnerLoginRet> held = HeldRecord();
    const bool isHeld = held != nullptr && IsHeld(*held);
    state.state = !isHeld ? VESK_SIGNED_OUT : IsExpired(*held) ? VESK_EXPIRED : VESK_SIGNED_IN;
    state.token_expire = isHeld ? held->tokenExpire : 0;
    CopyText(state.channel, isHeld ? held->channel.c_str() : "");
    CopyText(state.openid, isHeld ? held->openid.c_str() : "");
    state.request = mLastRequest;
    state.running = mLogin.request;
    if (mLogin.request != 0) {
        state.state = mLogin.waitsForScan ? VESK_WAITING_FOR_SCAN : VESK_LOGGING_IN;
        CopyText(state.channel, mLogin.channel.c_str());
    }
}

bool VESKMainLoop::IsBusy() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    Settle();
    return !mCalls.empty() || mWorks || (mLogin.request != 0 && !mLogin.waitsForScan);
}

// ---- The end of a login ----

/// Ends the login before its answer. What comes later for it reaches nobody.
/// @return false when none runs or its success is on its way.
bool VESKMainLoop::EndLogin(int32_t code, const char* message, bool logOut, int32_t thirdCode) {
    if (mLogin.request == 0) {
        return false;
    }
    if (mLogin.seqID.empty()) {
        // A cancelled one stays: see Begins.
        if (code == VESKError::LOGIN_OVERTAKEN) {
            mCalls.remove_if([&](const Call& call) { return call.request == mLogin.request; });
        }
    } else {
        VESKLoginManager* manager = VESKSingleton<VESKLoginManager>::Existing();
        const bool isWithdrawn =
            manager == nullptr || manager->Current().Withdraw(mLogin.seqID, logOut);
        if (!isWithdrawn) {
            if (code == VESKError::LOGIN_OVERTAKEN) {
                mStored = std::exchange(mLogin, Login());
            }
            mLogin.ends = Clock::time_point::max();
            return false;
        }
    }
    Finish(mLogin, code, message, thirdCode);
    return true;
}

/// From now on its success is nobody's any more.
void VESKMainLoop::FinishStored() {
    if (mStored.request != 0) {
        Finish(mStored, VESKError::LOGIN_OVERTAKEN, kOvertaken);
    }
}

void VESKMainLoop::Finish(Login& login, int32_t code, const char* message, int32_t thirdCode) {
    mResults.Refuse(login.request, {code, message, login.channel, thirdCode}, IsHeldBack(login));
    Forget(login);
}

/// What is refused at once is told behind the success of the login that was there before.
bool VESKMainLoop::IsHeldBack(const Login& login) const {
    return mStored.request != 0 && &login != &mStored;
}

void VESKMainLoop::Forget(Login& login) {
    if (!login.seqID.empty()) {
        mFinished[mFinishedCount++ % mFinished.size()] = std::move(login.seqID);
    }
    login = Login();
    if (mStored.request == 0) {
        mResults.Release();
    }
}

/// Not for a login that has ended before its result: what may be stored of it is nobody's.
void VESKMainLoop::EndRun(const char* seqID) {
    if (seqID == mRunning) {
        mRunning.clear();
    }
}

bool VESKMainLoop::HasFinished(const char* seqID) const {
    return std::find(mFinished.begin(), mFinished.end(), seqID) != mFinished.end();
}

/// What time has brought: the game looks often enough, so nobody has to wake up for it.
void VESKMainLoop::Settle() {
    if (mLogin.ends != Clock::time_point::max() && Clock::now() >= mLogin.ends) {
        EndLogin(VESKError::LOGIN_TIMED_OUT, "the login has taken too long", true);
    }
    // What is stored of a login that runs is told behind its success.
    if (!mOn || mEnded || !mRunning.empty()) {
        return;
    }
    const std::shared_ptr<const InnerLoginRet> held = HeldRecord();
    if (held == nullptr || held->openid.length() == 0) {
        return;
    }
    const bool isExpired = !IsHeld(*held) || IsExpired(*held); // the channel gave no new token
    if (mIsRefreshed || (held != mExpired && IsHeld(*held) && isExpired)) {
        VESKLoginRet ret = ToPublic(*held);
        ret.methodNameID = kMethodNameRefreshToken;
        if (isExpired) {
            ret.retCode = VESKError::TOKEN_EXPIRED;
            ret.retMsg = "token expire";
        }
        mResults.PushRefreshed(mHeldRequest, ret);
        mIsRefreshed = false;
        mExpired = isExpired ? held : nullptr;
    }
}

// ---- Results ----

bool VESKMainLoop::OnLogin(const VESKLoginRet& ret, const char* seqID) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    for (Login* login : {&mLogin, &mStored}) {
        if (login->request != 0 && seqID == login->seqID) {
            EndRun(seqID);
            if (ret.retCode == VESKError::SUCCESS) {
                mHeldRequest = login->request;
            }
            mResults.Answer(login->request, ret, IsHeldBack(*login));
            Forget(*login);
            return true;
        }
    }
    if (mEnded || HasFinished(seqID)) {
        return true;
    }
    EndRun(seqID);
    if (mOn) {
        mResults.PushUnasked(ret);
    }
    return mOn;
}

bool VESKMainLoop::OnBase(const VESKBaseRet& ret, const char* seqID) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    const auto found = mLogouts.find(seqID);
    if (found != mLogouts.end()) {
        mResults.Answer(found->second, ret);
        mLogouts.erase(found);
        return true;
    }
    if (mEnded || *seqID == '\0') { // the latter belongs to a login that ends an earlier one
        return true;
    }
    if (mOn) {
        mResults.PushUnasked(ret);
    }
    return mOn;
}

bool VESKMainLoop::OnQrCode(const VESKQrCodeRet& ret, const char* seqID) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    Settle();
    const bool isOurs = mLogin.request != 0 && seqID == mLogin.seqID;
    if (isOurs) {
        mLogin.waitsForScan = true;
    } else if (mEnded || HasFinished(seqID) || seqID == mStored.seqID) {
        return true;
    }
    if (!isOurs && !mOn) {
        return false;
    }
    try {
        mResults.PushQrCode(isOurs ? mLogin.request : 0, ret);
    } catch (...) { // what nobody can scan must not be waited for
        if (isOurs) {
            EndLogin(VESKError::NETWORK_ERROR, kNoMemory, true, kOutOfMemory);
        }
    }
    return true;
}

void VESKMainLoop::OnRefreshed() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    mIsRefreshed = mOn;
    Settle();
}

/// A login of the contract's own facade supersedes ours as well. What was held is dropped by now.
void VESKMainLoop::OnLoginBegun(const std::string& seqID) {
    std::string running = seqID;
    const std::lock_guard<VESKMutex> lock(mMutex);
    mRunning.swap(running);
    mHeldRequest = 0;
    mIsRefreshed = false;
    if (!mLogin.seqID.empty() && mLogin.seqID != seqID) {
        EndLogin(VESKError::LOGIN_OVERTAKEN, kOvertaken, false);
    }
    FinishStored();
}

void VESKMainLoop::OnLoginAnswer() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    Settle();
}

void VESKMainLoop::OnSilence(const std::string& seqID) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    const auto logout = mLogouts.find(seqID);
    if (logout != mLogouts.end()) { // of a login that is held without its channel
        mResults.Refuse(logout->second, {VESKError::UNKNOWN_CHANNEL, kNoSuchChannel, ""});
        mLogouts.erase(logout);
    } else if (mLogin.request != 0 && seqID == mLogin.seqID) {
        EndLogin(VESKError::CHANNEL_INIT_FAILED,
                 "the channel's component is missing or has not taken the login", true);
    }
}

void VESKMainLoop::OnLost(const std::string& seqID) noexcept {
    const std::lock_guard<VESKMutex> lock(mMutex);
    for (Login* login : {&mLogin, &mStored}) {
        if (login->request != 0 && seqID == login->seqID) {
            Finish(*login, VESKError::NETWORK_ERROR, kNoMemory, kOutOfMemory);
        }
    }
}

void VESKMainLoop::OnEnd() {
    const std::lock_guard<VESKMutex> lock(mMutex);
    mEnded = true;
    mOn = false;
    mCalls.clear();
    mResults.Clear();
    mLogouts.clear();
    mLogin = mStored = Login();
    mCalled.notify_all();
}

} // namespace VESK
} // namespace Braxel
