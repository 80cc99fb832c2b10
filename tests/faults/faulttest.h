#ifndef VESK_TESTS_FAULTS_FAULTTEST_H
#define VESK_TESTS_FAULTS_FAULTTEST_H

#include <cstdlib>
#include <string>
#include <thread>

#include "support/gametest.h"
#include "support/system.h"

namespace vesk::test {

/// A table of faults in one process. What each row is held to: as many results as were promised,
/// the process lives, the next login works, and descriptors and threads come back.
class FaultTest : public GameTest {
protected:
    /// A good login first, so that what is made once exists; then remembers what the process holds.
    void settle();
    /// Logs in under a fault that the row has arranged; expects exactly one result.
    VESKLoginRet faulty(const std::string& row, const char* channel = "Steam");
    /// Counts a row that has made its logins by itself.
    /// @param results how many login results the observer has heard of it
    void countRow(const std::string& what, size_t results = 1);
    /// Sets a variable of the environment; an empty value is as good as none.
    static void setVariable(const std::string& name, const std::string& value);
    /// No variable names a proxy, or what it is not for.
    static void forgetProxies();
    /// Waits until descriptors and threads have come back to what settle() counted.
    void expectQuiet();
    /// The next login works, nothing was heard too often, and all is quiet.
    void expectWhole();

    /// The process has not grown by more, at any time since settle(), than the largest answer and
    /// the copies take that its handling and its log lines make.
    void expectBoundedMemory() const;

    /// Prints the number of rows, for scripts/faults.
    void TearDown() override;

    ProcessCounts settled;

private:
    size_t mRows = 0;
    size_t mResults = 0; ///< of logins, until now
};

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
