#include "login/veskcurrentlogin.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace Braxel {
namespace VESK {

uint64_t VESKCurrentLogin::Begin(const std::string& seqID) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    const Withdrawn* withdrawn = FindWithdrawn(seqID);
    if (withdrawn == nullptr) {
        mSeqID = seqID;
    } else if (!withdrawn->logOut) {
        return 0;
    }
    return ++mCount;
}

bool VESKCurrentLogin::Is(const std::string& seqID, std::string& current) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    current = mSeqID;
    return current == seqID;
}

void VESKCurrentLogin::IfIs(const std::string& seqID, const std::function<void()>& change) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    if (seqID == mSeqID) {
        change();
    }
}

bool VESKCurrentLogin::Close(const std::string& seqID) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    if (seqID != mSeqID || seqID == mStoredSeqID) {
        return false;
    }
    mStoredSeqID = seqID;
    return true;
}

void VESKCurrentLogin::Reopen(const std::string& seqID) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    if (seqID == mStoredSeqID) {
        mStoredSeqID.clear();
    }
}

bool VESKCurrentLogin::End(const std::string& seqID, bool isSuccess) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    if (seqID != mSeqID || (!isSuccess && seqID == mStoredSeqID)) {
        return false;
    }
    mSeqID.clear();
    return true;
}

bool VESKCurrentLogin::Withdraw(const std::string& seqID, bool logOut) {
    constexpr size_t kMostRemembered = 256;
    const std::lock_guard<VESKMutex> lock(mMutex);
    if (seqID == mStoredSeqID) {
        return false;
    }
    if (seqID == mSeqID) {
        mSeqID.clear();
    }
    mWithdrawn.push_back({seqID, logOut});
    if (mWithdrawn.size() > kMostRemembered) {
        mWithdrawn.pop_front();
    }
    return true;
}

bool VESKCurrentLogin::IsWithdrawn(const std::string& seqID) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    return FindWithdrawn(seqID) != nullptr;
}

bool VESKCurrentLogin::TakeLogOut(const std::string& seqID) {
    const std::lock_guard<VESKMutex> lock(mMutex);
    Withdrawn* login = FindWithdrawn(seqID);
    return login != nullptr && std::exchange(login->logOut, false);
}

VESKCurrentLogin::Withdrawn* VESKCurrentLogin::FindWithdrawn(const std::string& seqID) {
    const auto found = std::find_if(mWithdrawn.begin(), mWithdrawn.end(),
                                    [&](const Withdrawn& login) { return login.seqID == seqID; });
    return found == mWithdrawn.end() ? nullptr : &*found;
}

} // namespace VESK
} // namespace Braxel
