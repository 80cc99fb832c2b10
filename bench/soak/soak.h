#ifndef VESK_BENCH_SOAK_SOAK_H
#define VESK_BENCH_SOAK_SOAK_H

#include <chrono>
#include <string>

#include "ledger.h"
#include "soakobserver.h"
#include "support/backendcontrol.h"
#include "support/files.h"
#include "support/gamefolder.h"

namespace vesk::soak {

/// A game that logs in and out for a long time, in the folder and with the backend that
/// tests/support/run-case.sh has made for it.
class Soak {
public:
    virtual ~Soak() = default;

    /// @param length how long at least
    virtual void run(std::chrono::seconds length) = 0;

    /// Closes the ledger.
    virtual bool report() const = 0;

protected:
    Soak() { Braxel::VESK::VESKLogin::SetLoginObserver(&observer); }

    /// Logs in from a thread of its own and waits for the one result.
    Braxel::VESK::VESKLoginRet login(const char* channel);

    /// Logs out; the game is told, the backend is told, and nothing is held afterwards.
    /// @param token what the backend is told when a refresh has put the messenger's token in its
    ///        place, which the backend does not know
    void logout(const std::string& token = "");

    const test::GameFolder game;
    test::BackendControl backend{test::environment("VESK_TEST_CONTROL_URL")};
    Ledger ledger;
    // Never deleted: threads of the SDK may outlive the soak.
    inline static SoakObserver& observer = *new SoakObserver;
};

} // namespace vesk::soak

#endif
