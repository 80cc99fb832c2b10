#ifndef VESK_TESTS_FLOW_MESSENGERTEST_H
#define VESK_TESTS_FLOW_MESSENGERTEST_H

#include "flow/flowtest.h"
#include "support/gamefolder.h"

namespace vesk::test {

/// A game that logs in through a messenger; its component is simulated.
class MessengerTest : public FlowTest, protected Messenger {
protected:
    MessengerTest(const char* channel, const char* simulator, const char* fileName);

    void startLogin();
    VESKLoginRet scanAndLogin();
    /// Two logins whose pre-codes come about the same time, in either order. A script keeps the
    /// player from confirming before that.
    void expectNewerOfCrossingPreCodes();

    const std::string channel;
};

} // namespace vesk::test

#endif
