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
    /// Two logins whose pre-codes come in the wrong order, in the right one, and at once. A script
    /// keeps the player from confirming before that.
    /// @param codeRequest the component's entry point that is asked for a code
    void expectNewerOfCrossingPreCodes(const char* codeRequest);

    const std::string channel;
};

} // namespace vesk::test

#endif
