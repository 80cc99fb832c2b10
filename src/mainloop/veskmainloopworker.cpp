#include <list>
#include <mutex>

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
    try {
        loop.Listen();
    } catch (...) { // NOLINT(bugprone-empty-catch): the first operation tries again
    }
    std::unique_lock<VESKMutex> lock(loop.mMutex);
    while (!loop.mEnded) {
        if (loop.mCalls.empty()) {
            loop.mCalled.wait(lock);
            continue;
        }
        std::list<Call> call;
        call.splice(call.end(), loop.mCalls, loop.mCalls.begin());
        loop.mWorks = true;
        lock.unlock();
        loop.Run(call.front());
        lock.lock();
        loop.mWorks = false;
    }
}

void VESKMainLoop::Listen() {
    if (!mListens && !HasEnded()) {
        ListenForResults();
        mListens = true;
    }
}

void VESKMainLoop::Run(const Call& call) {
    const auto begins = [&](const std::string& seqID) { return Begins(call, seqID); };
    try {
        if (HasEnded()) {
            return;
        }
        Listen();
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
        Fail(call);
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

/// For want of memory.
void VESKMainLoop::Fail(const Call& call) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    if (call.kind == Call::Kind::kLogout) {
        mResults.Refuse(call.request,
                        {VESKError::NETWORK_ERROR, kNoMemory, call.channel, kOutOfMemory});
    } else if (call.request != 0 && call.request == mLogin.request) {
        Finish(mLogin, VESKError::NETWORK_ERROR, kNoMemory, kOutOfMemory);
    }
}

} // namespace VESK
} // namespace Braxel
