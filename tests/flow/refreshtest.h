#ifndef VESK_TESTS_FLOW_REFRESHTEST_H
#define VESK_TESTS_FLOW_REFRESHTEST_H

#include "flow/messengertest.h"

namespace vesk::test {

/// A whole token refresh, from the task to the stored record, without waiting for the timer's
/// ticks: the program has the SDK's sources compiled in and runs the task itself.
class RefreshTest : public MessengerTest {
protected:
    RefreshTest(const char* channelName, const char* simulator, const char* fileName);

    /// Logs in with a token that is about to expire, and lets the task have its look.
    void logInAndRun();
    /// Waits until the token is "fresh". @param members of channelInfo, before those of every
    /// channel
    void expectRefreshed(const std::string& members, int64_t lifetime) const;
    void expectDropped() const;
};

} // namespace vesk::test

#endif
