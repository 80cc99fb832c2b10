#include "foundation/log/vesklogger.h"

#include <ctime>
#include <regex>

#include "unit/unittest.h"

namespace vesk::test {

using Logger = UnitTest;

TEST_F(Logger, ScramblingAndItsCuts) {
    // 'a' becomes ']', and '<', the key itself, becomes the zero byte that cuts the line.
    const Rows<const char*, const char*> rows = {
        {"", ""},           {"a", "]"},           {"aa", "aa"},
        {"aaaaa", "]a]aa"}, {"<aaaaaa", ""},      {"a<aaaaa", "]<]a]aa"},
        {"aa<aaaa", "]a"},  {"aaaa<a", "]a]a<a"}, {"aaaaaa<", "]a]a]a<"},
    };
    for (const auto& [plain, scrambled] : rows) {
        EXPECT_EQ(VESKLogger::Scramble(plain), scrambled) << plain;
    }
}

TEST_F(Logger, LineCarriesLevelLocalTimePlaceAndMessage) {
    const auto minute = [] {
        const std::time_t clock = std::time(nullptr);
        char text[32] = {};
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", std::localtime(&clock));
        return std::string(text);
    };
    const std::string before = minute();
    VESKLogger::GetInstance()->Write(kLogInfo, "f.cpp", "A::B", -3, "hello %d", 7);
    const std::string line = logLines().at(0);
    const std::regex form(R"(VESK \[W\.I\]\[(\d{4}-\d\d-\d\d \d\d:\d\d):\d\d\.\d{3}\])"
                          R"(\[f\.cpp,A::B,-3\]hello 7)");
    std::smatch match;
    ASSERT_TRUE(std::regex_match(line, match, form)) << line;
    EXPECT_THAT(match[1].str(), AnyOf(before, minute()));
}

TEST_F(Logger, LongMessagesAreCut) {
    VESK_LOG_INFO("Here", "%s", std::string(50000, 'x').c_str());
    VESK_LOG_INFO("Here", "%s", "next");
    EXPECT_THAT(newMessages(), ElementsAre(std::string(40959, 'x'), "next"));
}

TEST_F(Logger, FileOverFourGibibytesIsDeletedAtTheStartToo) {
    write("veskrecord.log", "");
    std::filesystem::resize_file(folder / "veskrecord.log", (uint64_t{4} << 30) + 5); // of holes
    VESK_LOG_INFO("Here", "%s", "fresh");
    EXPECT_LT(std::filesystem::file_size(folder / "veskrecord.log"), 100u);
}

TEST_F(Logger, FileOfTwoMebibytesIsKeptAndGrows) {
    write("veskrecord.log", std::string(2097152, 'x'));
    VESK_LOG_INFO("Here", "%s", "one");
    VESK_LOG_INFO("Here", "%s", "two");
    EXPECT_EQ(read("veskrecord.log").find('j'), 2097152u);
    EXPECT_THAT(newMessages(), ElementsAre("one", "two"));
}

TEST_F(Logger, LinesOfEightThreadsAreWholeAndInOrder) {
    const std::string text(300, 'x');
    onEightThreads([&](int thread) {
        for (int i = 0; i < 200; ++i) {
            VESK_LOG_INFO("Here", "%d:%d:%s", thread, i, text.c_str());
        }
    });
    std::vector<int> next(8);
    for (const std::string& message : newMessages()) {
        const int thread = message.at(0) - '0';
        const int number = next.at(static_cast<size_t>(thread))++;
        EXPECT_EQ(message, std::to_string(thread) + ":" + std::to_string(number) + ":" + text);
    }
    EXPECT_THAT(next, Each(200));
}

} // namespace vesk::test
