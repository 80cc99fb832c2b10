#include <gtest/gtest.h>
#include <random>
#include <rapidjson/document.h>
#include <sstream>

#include "logread/logbytes.h"

namespace vesk::test {
namespace {

using namespace logread;

/// Pieces that the reader looks for, in an order that no product writes.
std::string hostileLog(std::mt19937& random) {
    const std::string pieces[] = {
        scrambled(kHead + R"({"token":"a\\\"b","i":"{\"ctt\":\"x\"}"})"),
        scrambled(kHead + "ctt:a, key:VESK_SDK_KEY value:b VESK_KEY = c\n"),
        logLine("VESKLoginManager::Login", 1, "[ 1-1 ] Login"),
        logLine("ConvertLoginRet", 2, "[ 1-1 ] x, respBody:{\"ret\":"),
        logLine("VESKLogin::LoginRetObserver", 3, "[ will notify user"),
        scrambled("VESK [W.D][2"),
        "jEoK\x1c[k.",
        scrambled("VESK [W.D][" + std::string(50, '9')),
        scrambled("VESK [W.D][2026-11-24 13:53:09.383][,,]"),
        std::string("\\\\\\\"\0\n\r\n", 8),
        std::string(200, '"'),
        scrambled(kHead + R"({"i":"{\\u0022tok\u0065n\u005cu0022:\u005cu005cu005cu005cu005c"})"),
        scrambled(kHead + "\u2066\u2069\xc2\x9b\x9b\xe2\x80"),
    };
    std::string bytes;
    for (int count = 0; count < 30; ++count) {
        std::string piece = pieces[random() % std::size(pieces)];
        const int changes = random() % 3 == 0 ? static_cast<int>(random() % 8) : 0;
        for (int change = 0; change < changes; ++change) {
            piece[random() % piece.size()] = static_cast<char>(random() % 256);
        }
        bytes += piece.substr(0, random() % 4 == 0 ? random() % piece.size() : piece.size());
    }
    return random() % 2 == 0 ? bytes : inTextMode(bytes);
}

TEST(HostileLog, IsReadInTheSameWayInPiecesAndMakesValidJson) {
    std::mt19937 random(20261124);
    for (int round = 0; round < 1500; ++round) {
        const std::string bytes = hostileLog(random);
        const auto whole = readLog(bytes, bytes.size() + 1, true);
        EXPECT_EQ(readLog(bytes, 1 + random() % 40, true), whole) << round;
        std::istringstream lines(printLog(bytes, JsonFormat(), {}, true));
        size_t count = 0;
        for (std::string line; std::getline(lines, line); ++count) {
            rapidjson::Document json;
            json.Parse<rapidjson::kParseValidateEncodingFlag>(line.c_str(), line.size());
            ASSERT_FALSE(json.HasParseError()) << line;
        }
        EXPECT_EQ(count, whole.size());
        tellLogins(bytes);
    }
}

TEST(HostileLog, RecordWithoutAnEndIsBounded) {
    const std::string endless = scrambled(kHead + std::string(3000000, 'x'));
    const auto lines = readLog(endless + scrambled(kHead + "next"), 5000);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_LT(lines[0].size(), 100000u);
    EXPECT_EQ(lines[1], kHead + "next");
}

} // namespace
} // namespace vesk::test
