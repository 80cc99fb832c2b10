#include <gmock/gmock.h>
#include <rapidjson/document.h>

#include "logread/logbytes.h"
#include "support/files.h"

namespace vesk::test {
namespace {

using namespace logread;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

// '6' becomes a line feed, '1' a carriage return, '&' the end of a text file of old. A "<" cuts at
// an even index only, and a quoted prefix begins no record.
const std::vector<std::string> kTexts = {kHead + "6161&6",
                                         kHead + "\n66\n16\n",
                                         kHead,
                                         kHead + "a",
                                         kHead + "66666661",
                                         kHead + "1\n6\n",
                                         kHead + "odd: <b>",
                                         kHead + "log VESK [W.D]  VESK [W.D][x  VESK [W."};

std::string logOfTexts() {
    std::string bytes;
    for (const std::string& text : kTexts) {
        bytes += scrambled(text);
    }
    return bytes;
}

TEST(Reading, RecordsAreWholeInPiecesOfAnySizeFromEitherSystem) {
    for (const size_t piece : {1U, 2U, 7U, 63U, 4096U}) {
        EXPECT_THAT(readLog(logOfTexts(), piece), ElementsAreArray(kTexts)) << piece;
        EXPECT_THAT(readLog(inTextMode(logOfTexts()), piece), ElementsAreArray(kTexts)) << piece;
    }
    // A bare line feed between records does not make it a file of Linux.
    auto lines = readLog(inTextMode(logOfTexts()) + "note\n" + inTextMode(logOfTexts()));
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(kTexts.size()));
    EXPECT_THAT(lines, ElementsAreArray(kTexts));
}

TEST(Reading, CutRecordsAreShownAsCut) {
    const std::string holder = "VESK [W.D][2026-11-24 13:53:09.383][veskdefine.h,Braxel::VESK::"
                               "VESKInnerObserverHolder";
    const std::string bytes = scrambled(kHead + "answer: <html>") +
                              scrambled(holder + "<class InnerLoginRet>::Commit,55]lost") +
                              scrambled(kHead + "x, respBody:<html>") + scrambled(kHead + "after");
    EXPECT_THAT(readLog(bytes), ElementsAre(kHead + "answer:  [cut]", holder + " [cut]",
                                            kHead + "x, respBody: [cut]", kHead + "after"));
}

TEST(Reading, TruncatedTailIsShownAsCut) {
    const std::string bytes = scrambled(kHead + "first") + scrambled(kHead + "the second one");
    EXPECT_THAT(readLog(bytes.substr(0, bytes.size() - 5)),
                ElementsAre(kHead + "first", kHead + "the second [cut]"));
    // Broken off inside the prefix, or just behind it: no record, and the one before stays whole.
    for (const size_t length : {8U, 11U}) {
        EXPECT_THAT(readLog((scrambled(kHead + "first") + bytes).substr(0, 70 + length)),
                    ElementsAre(kHead + "first"));
    }
}

TEST(Reading, ForeignBytesCostAtMostTheRecordBeforeThem) {
    const std::string foreign("\0\xFFjEoK\x1c[k.nonsense\n\r\n6", 22);
    const auto lines =
        readLog(foreign + scrambled(kHead + "abc") + foreign + scrambled(kHead + "b"), 5);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].substr(0, kHead.size() + 2), kHead + "ab");
    EXPECT_EQ(lines[1], kHead + "b");
}

TEST(Reading, RecordWithoutAnEndIsBounded) {
    const std::string endless = scrambled(kHead + std::string(3000000, 'x'));
    const auto lines = readLog(endless + scrambled(kHead + "next"), 5000);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_LT(lines[0].size(), 100000u);
    EXPECT_EQ(lines[1], kHead + "next");
}

TEST(Reading, ControlCharactersDoNotReachTheTerminal) {
    const std::pair<std::string, std::string> rows[] = {
        {"a\x1b[2J\rb\x7f\tc\r\nd", "a\\x1b[2J\\x0db\\x7f\tc\nd"},
        {"alone \x9b[2J \x80 \x9f \xa0\xff", "alone \\x9b[2J \\x80 \\x9f \xa0\xff"},
        {"in UTF-8\xc2\x9b[2J\xc2\xa0\xc3\x9b", "in UTF-8\\xc2\\x9b[2J\xc2\xa0\xc3\x9b"},
        {"\u202e\u202c\u2066\u2069", R"(\xe2\x80\xae\xe2\x80\xac\xe2\x81\xa6\xe2\x81\xa9)"},
        {"\u200e\u200f\u061c", R"(\xe2\x80\x8e\xe2\x80\x8f\xd8\x9c)"},
        {"\u202f\u2026\u200d\u0661", "\u202f\u2026\u200d\u0661"},
        {"\xe2\x80\x1b", "\xe2\\x80\\x1b"},
    };
    for (const auto& [text, shown] : rows) {
        EXPECT_THAT(readLog(scrambled(kHead + text + " end")), ElementsAre(kHead + shown + " end"));
    }
}

TEST(Reading, JsonHasEachPartAndIsValidWhateverTheBytes) {
    const std::string out =
        printLog(scrambled(kHead + "\xC3\xA9 \xFF \"q\"\n\x01\xED\xA0\x80\\\u2066\u2069\u009b") +
                     scrambled(kHead + "x: <"),
                 appendAsJson);
    EXPECT_EQ(out.substr(0, out.find('\n')),
              R"({"time":"2026-11-24 13:53:09.383","level":"D","file":"f.cpp",)"
              R"("method":"Braxel::VESK::X::f","line":76,"message":")"
              "\xC3\xA9"
              R"( \ufffd \"q\"\n\u0001\ufffd\ufffd\ufffd\\\u2066\u2069\u009b","cut":false})");
    rapidjson::Document last;
    last.Parse<rapidjson::kParseValidateEncodingFlag>(out.substr(out.find('\n') + 1).c_str());
    ASSERT_FALSE(last.HasParseError());
}

TEST(Reading, FiltersByLevelIdAndTime) {
    const std::string bytes =
        logLine("A", 1000, "[ 1106-AB-17-1 ] one") + logLine("B", 2000, "[ 1106-AB-17-12 ]", 'E') +
        logLine("C", 3000, "[ 1106-AB-17-1 ] two", 'I') + scrambled("VESK [W.D][2026-1");
    const auto shown = [&](char level, const char* id, const char* since) {
        RecordFilter filter;
        filter.level = level;
        filter.sequenceId = id;
        filter.since = since;
        const RecordFormat message = [](std::string& out, const LogRecord& record) {
            out.append(record.message).append("|");
        };
        return printLog(bytes, message, filter);
    };
    const std::string one = "[ 1106-AB-17-1 ] one|", error = "[ 1106-AB-17-12 ]|",
                      two = "[ 1106-AB-17-1 ] two|", cut = "VESK [W.D][2026-1|";
    EXPECT_EQ(shown('W', "", ""), error);
    EXPECT_EQ(shown('D', "1106-AB-17-1", ""), one + two);
    EXPECT_EQ(shown('D', "", "2026-11-24 13:53:03"), two + cut) << "cut goes with the one before";
}

struct Following : ::testing::Test {
    /// Twice, because the last record waits until nothing follows it.
    std::vector<std::string> poll() {
        heard.clear();
        EXPECT_TRUE(follower.poll());
        EXPECT_TRUE(follower.poll());
        return heard;
    }

    const std::filesystem::path file =
        std::filesystem::path(environment("VESK_TEST_FOLDER")) / "followed.log";
    std::vector<std::string> heard;
    LogReader reader{[this](const LogRecord& r) { heard.emplace_back(r.message); }, {}, false};
    LogFollower follower{file, reader};
    const std::string a = scrambled(kHead + "a"), b = scrambled(kHead + "b 6 b");
};

TEST_F(Following, HearsWhatIsAppendedOnceItIsWhole) {
    EXPECT_FALSE(follower.poll()) << "there is no file yet";
    writeFile(file, a);
    EXPECT_THAT(poll(), ElementsAre("a"));
    writeFile(file, a + b.substr(0, b.size() - 2));
    EXPECT_THAT(poll(), ElementsAre());
    writeFile(file, a + b + a);
    EXPECT_THAT(poll(), ElementsAre("b 6 b", "a"));
    EXPECT_THAT(poll(), ElementsAre());
}

TEST_F(Following, BeginsAnewWhenTheFileIsReplacedOrTruncated) {
    writeFile(file, a + b);
    EXPECT_THAT(poll(), ElementsAre("a", "b 6 b"));
    writeFile(file, b);
    EXPECT_THAT(poll(), ElementsAre("b 6 b")) << "shorter";
    std::filesystem::remove(file);
    EXPECT_FALSE(follower.poll());
    writeFile(file, scrambled("VESK [W.I][2027-01-01 00:00:00.000][f,g,1]new") + a + a + b);
    EXPECT_THAT(poll(), ElementsAre("new", "a", "a", "b 6 b")) << "longer, but another one";
    writeFile(file, inTextMode(a + b));
    EXPECT_THAT(poll(), ElementsAre("a", "b 6 b")) << "from the other system";
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    EXPECT_THROW(follower.poll(), std::runtime_error) << "no plain file, so it may never end";
}

} // namespace
} // namespace vesk::test
