#include "ledger.h"

#include <cstdio>

namespace vesk::soak {

void Ledger::expect(bool holds, const std::string& what) {
    ++(holds ? mHeld : mFailed);
    if (!holds && mFindings.size() < 10) {
        mFindings.push_back(what);
    }
}

bool Ledger::close(const char* title) const {
    // The library prints, too, and no line ends.
    std::printf("\nsoak: %s\n", title);
    for (const auto& [account, count] : mAccounts) {
        std::printf("soak:   %-36s %10ld\n", account.c_str(), count);
    }
    for (const std::string& finding : mFindings) {
        std::printf("soak:   not so: %s\n", finding.c_str());
    }
    std::printf("soak: %ld passed, %ld failed\n", mHeld, mFailed);
    return mFailed == 0 && mHeld > 0;
}

} // namespace vesk::soak
