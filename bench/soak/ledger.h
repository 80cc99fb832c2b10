#ifndef VESK_BENCH_SOAK_LEDGER_H
#define VESK_BENCH_SOAK_LEDGER_H

#include <map>
#include <string>
#include <vector>

namespace vesk::soak {

/// What was asked of the SDK, what it answered and what the backend has seen, and whether they
/// agree.
class Ledger {
public:
    void add(const std::string& account, long count = 1) { mAccounts[account] += count; }

    /// A check; the first ten that do not hold are printed.
    void expect(bool holds, const std::string& what);

    /// Prints the accounts and what did not hold, and last "N passed, N failed", each line after
    /// "soak: ".
    /// @return whether all held
    bool close(const char* title) const;

private:
    std::map<std::string, long> mAccounts;
    long mHeld = 0;
    long mFailed = 0;
    std::vector<std::string> mFindings;
};

} // namespace vesk::soak

#endif
