// A game that logs in and out for VESK_SOAK_SECONDS at least, as the player VESK_SOAK_PLAYER
// ("steam" or "ferno"); scripts/soak runs both.
#include <chrono>
#include <cstdio>
#include <exception>
#include <memory>
#include <string>

#include "fernosoak.h"
#include "steamsoak.h"

int main() {
    try {
        const std::string player = vesk::test::environment("VESK_SOAK_PLAYER");
        const std::chrono::seconds length(std::stoi(vesk::test::environment("VESK_SOAK_SECONDS")));
        std::unique_ptr<vesk::soak::Soak> soak;
        if (player == "steam") {
            soak = std::make_unique<vesk::soak::SteamSoak>();
        } else {
            soak = std::make_unique<vesk::soak::FernoSoak>();
        }
        try {
            soak->run(length);
        } catch (const std::exception& error) {
            std::printf("soak: ended early: %s\n", error.what());
            soak->report();
            return 1;
        }
        if (soak->report()) {
            std::printf("soak: held\n");
            return 0;
        }
    } catch (const std::exception& error) {
        std::printf("soak: %s\n", error.what());
    }
    return 1;
}
