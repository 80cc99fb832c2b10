#include "loginstory.h"

#include <gtest/gtest.h>

#include "logread/logbytes.h"

namespace vesk::test {
namespace {

TEST(LoginStories, TimesAreThoseSinceTheBeginningAndSinceTheStepBefore) {
    logread::LoginStory story;
    logread::LogReader reader(story, {}, true);
    reader.feed(logLine("VESKLogin::Login", 900, "channel:Steam permissions: subChannel: e") +
                logLine("VESKLoginManager::Login", 1000, "[ 1-1 ] Login") +
                logLine("VESKLoginManager::PluginLoginObserver", 1250, "[ 1-1 ], {}") +
                logLine("VESKLogin::LoginRetObserver", 2000, "[ 1-1 ] ... will notify user"));
    reader.flush();
    EXPECT_EQ(story.text(), "login 1-1, Steam, 2026-11-24 13:53:01.000\n"
                            "         0 ms         +0 ms  request\n"
                            "       250 ms       +250 ms  plugin answer\n"
                            "      1000 ms       +750 ms  delivery\n");
    EXPECT_EQ(story.text("1-2"), "");
}

TEST(LoginStories, FailedAndSupersededLoginsAreToldAsSuch) {
    const std::string bytes =
        logLine("VESKLoginManager::Login", 0, "[ 1-1 ] Login") +
        logLine("VESKLoginManager::OnPreCodeResp", 1, "[ 1-1 ] OnPreCodeResp ret:28, respBody:") +
        logLine("VESKLogin::LoginRetObserver", 2, "[ 1-1 ] ... will notify user") +
        logLine("VESKFRWrapper::Login", 3, "nobody's error", 'E') +
        logLine("VESKLoginManager::Login", 4, "[ 1-2 ] Login") +
        logLine("VESKFRWrapper::Login", 5, "failed, token:abc", 'E') +
        logLine("VESKLoginManager::Login", 6, "[ 1-3 ] Login") +
        logLine("VESKLoginManager::PluginLoginObserver", 7,
                "[ 1-2 ], mCurrentLoginSeqID is not equal 1-3") +
        logLine("VESKLogin::BaseRetObserver", 8, "[ 1-4 ] ... will notify user");
    EXPECT_EQ(tellLogins(bytes),
              "login 1-1, channel not known, 2026-11-24 13:53:00.000\n"
              "request\nno pre-code answer: result 28\ndelivery\n\n"
              "login 1-2, channel not known, 2026-11-24 13:53:00.004\n"
              "request\nerror: failed, token:***\nsuperseded by a newer login\n\n"
              "login 1-3, channel not known, 2026-11-24 13:53:00.006\n"
              "request\n            no result in this log\n");
}

} // namespace
} // namespace vesk::test
