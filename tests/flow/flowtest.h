#ifndef VESK_TESTS_FLOW_FLOWTEST_H
#define VESK_TESTS_FLOW_FLOWTEST_H

#include <gtest/gtest.h>
#include <string>

#include "support/backendcontrol.h"
#include "support/files.h"
#include "support/gamefolder.h"
#include "support/recordingobserver.h"
#include "vesk/vesklogin.h"

namespace vesk::test {

using namespace Braxel::VESK;

/// A game in a folder of its own with a dev backend. Each case has its own process; arrange the
/// game's folder first, then call start(), login() or logout().
class FlowTest : public ::testing::Test {
protected:
    /// Sets the observer.
    void start();
    /// Logs in through Steam and waits for the result.
    VESKLoginRet login(const char* extraJson = "");
    /// Logs out and waits for the result.
    VESKBaseRet logout(const char* channel = "", bool channelOnly = false);
    /// Waits until the SDK has logged a line that holds @p text.
    void waitForLogLine(const std::string& text) const;

    const GameFolder game;
    BackendControl backend{environment("VESK_TEST_CONTROL_URL")};
    // Never deleted: threads of the SDK may outlive the case.
    inline static RecordingObserver& observer = *new RecordingObserver;

private:
    bool mStarted = false;
};

/// A good answer to "auth/login"; @p more is further members, with a leading comma.
Answer loginAnswer(const std::string& id, const std::string& more = "");

} // namespace vesk::test

#endif
