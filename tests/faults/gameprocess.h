#ifndef VESK_TESTS_FAULTS_GAMEPROCESS_H
#define VESK_TESTS_FAULTS_GAMEPROCESS_H

#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>
#include <thread>

namespace vesk::test {

/// Plays in a process of its own, which has to leave as a game does, with @p result, and before
/// ten seconds are over. This process must not have used the SDK yet.
template <typename Play>
void expectGame(int result, const Play& play) {
    EXPECT_EXIT(
        {
            std::thread([] {
                std::this_thread::sleep_for(std::chrono::seconds(10));
                std::_Exit(99); // hung
            }).detach();
            std::exit(play());
        },
        ::testing::ExitedWithCode(result), "");
}

} // namespace vesk::test

#endif
