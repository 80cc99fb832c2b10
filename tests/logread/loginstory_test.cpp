#include "loginstory.h"

#include <gmock/gmock.h>

#include "logread/logbytes.h"

namespace vesk::test {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(LoginStories, TimesAreThoseSinceTheBeginningAndSinceTheStepBefore) {
    logread::LoginStory story;
    logread::LogReader reader([&](const auto& record) { story.take(record); }, {}, true);
    reader.feed(logLine("VESKLogin::Login", 900, "channel:Steam permissions: subChannel: e") +
                logLine("VESKLoginManager::Login", 1000, "[ 1-1 ] Login") +
                logLine("VESKLoginManager::PluginLoginObserver", 1250, "[ 1-1 ], {}") +
                logLine("ConvertLoginRet", 2000, R"([ 1-1 ], respBody:{"ret":0})") +
                logLine("VESKLogin::LoginRetObserver", 2000, "[ 1-1 ] ... will notify user"));
    reader.flush();
    EXPECT_EQ(story.text(), "login 1-1, Steam, 2026-11-24 13:53:01.000\n"
                            "         0 ms         +0 ms  request\n"
                            "       250 ms       +250 ms  plugin answer\n"
                            "      1000 ms       +750 ms  backend answer: ret 0\n"
                            "      1000 ms         +0 ms  result delivered: retCode 0\n"
                            "  result   retCode 0, it worked\n");
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
    const std::string story = tellLogins(bytes);
    EXPECT_THAT(story, StartsWith("login 1-1, channel not known, 2026-11-24 13:53:00.000\n"
                                  "request\nno pre-code answer\nresult delivered: retCode 4\n"));
    EXPECT_THAT(story, HasSubstr("  outside  libcurl reports 28, "));
    EXPECT_THAT(story, EndsWith("login 1-2, channel not known, 2026-11-24 13:53:00.004\n"
                                "request\nfailed, token:***\nsuperseded by a newer login\n"
                                "  result   none: superseded by a newer login\n\n"
                                "login 1-3, channel not known, 2026-11-24 13:53:00.006\n"
                                "request\n"
                                "  result   none in this log; the last step is: request\n"
                                "  remedy   channels are named KZ, Ferno and Steam, exactly so\n"));
}

// How the codes come about is the product's; here stands what its records make of them.
TEST(LoginStories, AnswersAreReadAsTheProductReadsThem) {
    const auto url = [](const std::string& text) { return text + ", url:https://h?a=1&seq=1-1&t"; };
    const auto answer = [](const std::string& body, char level = 'D') {
        return logLine("ConvertLoginRet", 2, "[ 1-1 ] loginRet:{}, respBody:" + body, level);
    };
    const std::string http = "VESKHTTPManager::OnHTTPClientCallBack", run = "::RunRequest";
    const std::pair<std::string, std::string> rows[] = {
        {answer(R"({ "msg" : "no, \" : 1, "ret" :12})"),
         "answered 12, the request is refused: \"no, "},
        {answer(R"({"msg":"m"})"), "  outside  the backend's answer has no code: \"m\"\n"},
        {answer(R"({"ret":0,"need_name_auth" : true})"), "retCode 20, "},
        {answer(""), "the backend answered 0, the answer is"},
        {answer(R"({"ret":0,"x)") +
             logLine("VESKJsonReader::init", 3, "Parse json string [ {", 'E'),
         "the backend answered 0, the answer is"},
        {logLine("VESKHTTPClient::SendPostRequest", 1, url("return retcode:60")) + answer(""),
         "libcurl reports 60, "},
        {logLine(http, 1, url("responseCode: 503")) + answer(""), "HTTP status 503, "},
        {logLine(http, 1, url("responseCode: 0")) + answer(""), "the SDK reports 833, "},
        {logLine("VESKHTTPManager" + run, 1, url("req timeout! ")) + answer(""), "reports 4, "},
        {logLine("VESKHTTPManager" + run, 1, url("http request fail ")) + answer(""),
         "reports 2, "},
        {logLine("VESKLoginManager::AutoLogin", 1, "[ 1-1 ], Auto login only", 'E'), "retCode 7, "},
        {logLine("VESKLoginManager::OnPreCodeResp", 1, "No preCode! msg:", 'E'), "retCode 5, "},
        {"", "result   the records that tell its retCode are not in this log"},
    };
    for (const auto& [records, told] : rows) {
        EXPECT_THAT(
            tellLogins(logLine("VESKLoginManager::Login", 0, "[ 1-1 ] Login") + records +
                       logLine("VESKLogin::LoginRetObserver", 9, "[ 1-1 ] will notify user")),
            HasSubstr(told));
    }
}

} // namespace
} // namespace vesk::test
