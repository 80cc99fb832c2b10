#include "common/vesk.h"

#include <regex>
#include <set>

#include "unit/unittest.h"

namespace vesk::test {

using Identity = UnitTest;

TEST_F(Identity, SequenceWrapsAfterItsLimit) {
    const Rows<uint32_t, uint32_t> rows = {
        {0, 1}, {7, 8}, {419999999, 420000000}, {420000000, 1}, {0xFFFFFFFF, 1}};
    for (const auto& [counter, next] : rows) {
        EXPECT_EQ(VESK::NextSequence(counter), next) << counter;
    }
}

TEST_F(Identity, SequenceIdNamesGameDeviceTimeAndNumber) {
    write("VESKConfig.ini", "VESK_GAME_ID=1106");
    const std::regex form("1106-([0-9A-F]{8}-[0-9A-F]{4}-[0-9a-f]{4}-[0-9A-F]{4}-[0-9A-F]{12})"
                          "-([0-9]+)-([0-9]+)");
    for (const char* number : {"1", "2"}) {
        const std::string id = VESK::CreateSequenceId();
        std::smatch match;
        ASSERT_TRUE(std::regex_match(id, match, form)) << id;
        EXPECT_EQ(match[1], VESK::GetUUID());
        EXPECT_LE(std::abs(std::stoll(match[2]) - now()), 5);
        EXPECT_EQ(match[3], number);
        EXPECT_EQ(logged("]current SeqId " + id + " "), 1u);
    }
    EXPECT_EQ(logged("]from storage GameId 1106, UUID , SeqId primary key "), 1u);
    EXPECT_EQ(logged("]not found UUID , create new " + VESK::GetUUID()), 1u);
    EXPECT_EQ(logged("config from"), 0u); // the file alone was asked
}

TEST_F(Identity, WithoutAGameTheIdBeginsWithADashAndTheKeysAreLookedForEachTime) {
    for (const char* number : {"-1", "-2"}) {
        EXPECT_THAT(VESK::CreateSequenceId(),
                    AllOf(StartsWith("-" + VESK::GetUUID() + "-"), EndsWith(number)));
    }
    EXPECT_EQ(logged("]from storage GameId , UUID , SeqId primary key "), 2u);
}

TEST_F(Identity, EightThreadsNeverMakeTheSameId) {
    std::vector<std::string> made(400);
    onEightThreads([&](int thread) {
        for (int i = 0; i < 50; ++i) {
            made[static_cast<size_t>(50 * thread + i)] = VESK::CreateSequenceId();
        }
    });
    EXPECT_EQ(std::set<std::string>(made.begin(), made.end()).size(), 400u);
}

TEST_F(Identity, DeviceInformationCanBeSwitchedOff) {
    write("VESKConfig.ini", "VESK_DEVICE_INFO=0");
    EXPECT_EQ(VESK::GetDeviceInfo(), "{}");
}

} // namespace vesk::test
