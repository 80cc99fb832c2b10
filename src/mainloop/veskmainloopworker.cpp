#include <algorithm>
#include <mutex>
#include <utility>

#include "login/veskguarded.h"
#include "login/veskloginmanager.h"
#include "login/veskoperations.h"
#include "mainloop/veskmainloop.h"
#include "vesk/veskerror.h"

// The worker thread of the main loop: all that may take long.

namespace Braxel {
namespace VESK {

void VESKMainLoop::Worker(void* mainLoop) {
    VESKMainLoop& loop = *static_cast<VESKMainLoop*>(mainLoop);
    if (!HasEnded()) {
        ListenForResults();
    }
    std::unique_lock<VESKMutex> lock(loop.mMutex);
    while (!loop.mEnded) {
        if (loop.mCalls.empty()) {
            loop.mCalled.wait(lock);
            continue;
        }
        const Call call = std::move(loop.mCalls.front());
        loop.mCalls.pop_front();
        loop.mWorks = true;
        lock.unlock();
        loop.Run(call);
        lock.lock();
        loop.mWorks = false;
    }
}

void VESKMainLoop::Run(const Call& call) {
    const auto begins = [&](const std::string& seqID) { return Begins(call, seqID); };
    try {
        if (HasEnded()) {
            return;
        }
        switch (call.kind) {
        case Call::Kind::kLogin:
            RunLogin(call.channel.c_str(), call.permissions.c_str(), call.subChannel.c_str(),
                     call.extraJson.c_str(), begins);
            break;
        case Call::Kind::kAutoLogin:
            RunAutoLogin(begins);
            break;
        case Call::Kind::kLogout:
            RunLogout(call.channel.c_str(), call.subChannel.c_str(), call.channelOnly, begins);
            break;
        }
    } catch (...) {
        try {
            Fail(call);
        } catch (...) { // NOLINT(bugprone-empty-catch): the worker has to go on
        }
    }
}

/// The operation gets the sequence id by which its results are known.
/// @return false when its login has ended meanwhile.
bool VESKMainLoop::Begins(const Call& call, const std::string& seqID) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    if (call.request == 0) {
        return true;
    }
    if (call.kind == Call::Kind::kLogout) {
        mLogouts[seqID] = call.request;
        return true;
    }
    if (mLogin.request == call.request) {
        mLogin.seqID = seqID;
        return true;
    }
    // One that was cancelled before it began still signs out who was signed in, as one that has
    // begun: the game cannot know which of both it was. A newer login does that by itself.
    return mLogin.request == 0 && call.kind == Call::Kind::kLogin &&
           VESKLoginManager::GetInstance()->Current().Withdraw(seqID, true);
}

/// For want of memory: the game hears what it hears of a request that runs out of it.
void VESKMainLoop::Fail(const Call& call) {
    constexpr int32_t kOutOfMemory = 27; // libcurl's code
    const char* message = "memory has run out";
    const std::lock_guard<VESKMutex> lock(mMutex);
    if (call.kind != Call::Kind::kLogout) {
        if (call.request != 0 && call.request == mLogin.request) {
            auto ret = MakeRet<VESKLoginRet>(kMethodNameLogin, VESKError::NETWORK_ERROR, message);
            ret.thirdCode = kOutOfMemory;
            Finish(mLogin, ret);
        }
        return;
    }
    const auto found = std::find_if(mLogouts.begin(), mLogouts.end(), [&](const auto& logout) {
        return logout.second == call.request;
    });
    if (found != mLogouts.end()) {
        mLogouts.erase(found);
        auto ret = MakeRet<VESKBaseRet>(kMethodNameLogout, VESKError::NETWORK_ERROR, message);
        ret.thirdCode = kOutOfMemory;
        mResults.PushBase(call.request, ret);
    }
}

} // namespace VESK
} // namespace Braxel
