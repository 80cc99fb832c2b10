#ifndef VESK_BENCH_SOAK_FERNOSOAK_H
#define VESK_BENCH_SOAK_FERNOSOAK_H

#include "soak.h"
#include "support/messenger.h"

namespace vesk::soak {

/// One player who stays for hours: logs in by a scanned code, gets a fresh token every four
/// minutes, and comes back after each logout.
class FernoSoak : public Soak {
public:
    FernoSoak() { game.configure("FERNO_APP_ID=f-7"); }

    void run(std::chrono::seconds length) override;
    bool report() const override { return ledger.close("Ferno: one player, fresh tokens"); }

private:
    /// A visit of two refreshes, or of as many as there is time for.
    void stay(std::chrono::steady_clock::time_point end);
    void waitForToken(const std::string& token, std::chrono::steady_clock::time_point end);
    bool visit(const std::string& more);

    const test::Messenger mComponent{game, "ferno", "frlogin.dll"};
    long mTokens = 0;
};

} // namespace vesk::soak

#endif
