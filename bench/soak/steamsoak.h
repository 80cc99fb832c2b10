#ifndef VESK_BENCH_SOAK_STEAMSOAK_H
#define VESK_BENCH_SOAK_STEAMSOAK_H

#include <vector>

#include "faults/processcounts.h"
#include "soak.h"

namespace vesk::soak {

/// Ten thousand logins and more, in rounds: 64 threads log in at once, then one after the other,
/// and the player leaves. One request in ten meets a fault.
class SteamSoak : public Soak {
public:
    void run(std::chrono::seconds length) override;
    bool report() const override {
        return ledger.close("Steam: many players, one in ten in trouble");
    }

private:
    void round(long number);
    /// Only the newest of several logins has to be answered.
    void burst(bool withHang);
    void turns();
    void compareWithBackend(size_t atLeast, size_t atMost);
    /// Waits until no request runs any more, so that whatever was to be answered has been.
    void waitUntilQuiet();
    /// Descriptors, threads and memory: the last quarter of the rounds beside the first.
    void compareSamples();

    size_t mQuietThreads = 0;
    std::vector<test::ProcessCounts> mSamples;
};

} // namespace vesk::soak

#endif
