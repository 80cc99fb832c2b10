#include "redactor.h"

#include <gtest/gtest.h>

#include "logread/logbytes.h"

namespace vesk::test {
namespace {

using logread::Redactor;

TEST(Redacting, EveryNotationOfTheProductIsMasked) {
    const struct {
        const char* message;
        const char* redacted;
    } rows[] = {
        {R"({"token":"a","n":1,"openid":"b"})", R"({"token":"***","n":1,"openid":"***"})"},
        {R"({"i":"{\"ctt\":\"x\\\"y\",\"a\":\"1\"}"})", R"({"i":"{\"ctt\":\"***\",\"a\":\"1\"}"})"},
        {R"({"token" : "a\"b\\","x":"y"})", R"({"token" : "***","x":"y"})"},
        {"{\"token\"\t:\r\n\t\"a\"}", "{\"token\"\t:\r\n\t\"***\"}"},
        {R"({"steamid":7656,"ret":0})", R"({"steamid":***,"ret":0})"},
        {R"({"access_token":["a","b"]})", R"({"access_token":***)"},
        {R"({"token":"","msg":"m"})", R"({"token":"","msg":"m"})"},
        {R"({"tok\u0065n":"ab\u0063","\u0063TT":"x","n\u0031":1})",
         R"({"token":"***","cTT":"***","n1":1})"},
        {R"({"i":"{\u0022tok\\u0065n\u0022:\u0022x\\\u0022y\u0022,\"a\":1}"})",
         R"({"i":"{\"token\":\"***\",\"a\":1}"})"},
        {R"({"i":"{\"j\":\"{\\u0022ctt\\u0022:\\u0022x\\u0022}\",\"a\":1}"})",
         R"({"i":"{\"j\":\"{\\\"ctt\\\":\\\"***\\\"}\",\"a\":1}"})"},
        {R"({"tok\u005cu0065n":"x","z\u00e9\u000a\u004":"\u005c\"","a":1})",
         R"({"token":"***","z\u00e9\u000a\u004":"\\\"","a":1})"},
        {R"({"token":"broken off)", R"({"token":"***)"},
        {"https://h/v2/auth?seq=1-1&sig=abc&x=1 postData",
         "https://h/v2/auth?seq=1-1&sig=***&x=1 postData"},
        {"url:https://h?sig=abc, opt:3", "url:https://h?sig=***, opt:3"},
        {"A = 1\nVESK_SDK_KEY = a b & c\nKZ_APP_KEY=\n",
         "A = 1\nVESK_SDK_KEY = ***\nKZ_APP_KEY=\n"},
        {"config from default, key:VESK_SDK_KEY value:k",
         "config from default, key:VESK_SDK_KEY value:***"},
        {"config key = KZ_APP_KEY , value = k ", "config key = KZ_APP_KEY , value = ***"},
        {"key : token , val(String) : a , type : 5", "key : token , val(String) : ***"},
        {"key : token , val(String) :  , type : 5", "key : token , val(String) :  , type : 5"},
        {"key : msg , val(String) : a , type : 5", "key : msg , val(String) : a , type : 5"},
        {"ok, ctt:a, b, openid:c d, sessionkey:e ctt_timeout:300 -1",
         "ok, ctt:***, openid:***, sessionkey:*** ctt_timeout:300 -1"},
        {"KZ login succeed! openid:a ctk:b", "KZ login succeed! openid:*** ctk:***"},
        {"Get platform login result, openID:a token:b c",
         "Get platform login result, openID:*** token:***"},
        {"Qrcode info, image url:http://u, id:q, state:1 result message:m",
         "Qrcode info, image url:***, id:***, state:1 result message:m"},
        {"qrcode timeout: 9 url: http://u 1 2 3", "qrcode timeout: 9 url: ***"},
        {"start, pre_code:p", "start, pre_code:***"},
        {"Get Steam ID from SDK:7 7", "Get Steam ID from SDK:***"},
        {"Write to file:/g/upra_login.txt with data:KZu",
         "Write to file:/g/upra_login.txt with data:***"},
        {"Read file success! Content:\nKZu", "Read file success! Content:\n***"},
        {R"(channel:KZ extraJson:{"any":"p"})", "channel:KZ extraJson:***"},
        {"Get auth session ticket:0AFF", "Get auth session ticket:***"},
        {R"(Parse json string [ {"token":"ab )", R"(Parse json string [ {"token":"***)"},
        {"ret : 0, token_expire_time:17, [ 1106-A-1 ] ok",
         "ret : 0, token_expire_time:17, [ 1106-A-1 ] ok"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Redactor().redact(row.message), row.redacted);
    }
}

TEST(Redacting, SecretIsKnownAgainWithoutItsNameAndASequenceIdStaysReadable) {
    Redactor redactor;
    const std::string id = "1106-105E935A-876A-4621-83F0-E61775C36985-1795536557-1";
    redactor.redact("token:of " + id);
    EXPECT_EQ(redactor.redact("[ " + id + " ] Login"), "[ " + id + " ] Login");
    redactor.redact(R"({"ticket":"0AFF17C0FFEE","user_name":"somebody"})");
    EXPECT_EQ(redactor.redact("about 0AFF17C0FFEE, not 0AFF17C0FFEE1"),
              "about ***, not 0AFF17C0FFEE1");
    EXPECT_EQ(redactor.redact("somebody called"), "somebody called") << "may be a plain word";
}

TEST(Redacting, TextThatIsStillScrambledInPartIsMasked) {
    // A byte is lost in front of the members, so that the wrong half of the rest is unscrambled.
    const std::string line = scrambled(kHead + R"(body:{"ret":0,"token":"abcdefgh"} done)");
    const auto lines = readLog(std::string(line).erase(kHead.size() + 5, 1), 4096, true);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].substr(0, kHead.size() + 5), kHead + "body:");
    EXPECT_EQ(lines[0].substr(lines[0].size() - 3), "***");
    EXPECT_LT(lines[0].size(), kHead.size() + 15);
}

} // namespace
} // namespace vesk::test
