#include <atomic>
#include <set>

#include "common/vesk.h"
#include "common/veskchannelfacts.h"
#include "common/veskdefine.h"
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

TEST_F(Identity, EightThreadsNeverMakeTheSameId) {
    std::vector<std::string> made(400);
    onEightThreads([&](int thread) {
        const auto first = static_cast<size_t>(thread) * 50;
        for (size_t i = 0; i < 50; ++i) {
            made[first + i] = VESK::CreateSequenceId();
        }
    });
    EXPECT_EQ(std::set<std::string>(made.begin(), made.end()).size(), 400u);
}

TEST_F(Identity, DeviceInformationCanBeSwitchedOff) {
    write("VESKConfig.ini", "VESK_DEVICE_INFO=0");
    EXPECT_EQ(VESK::GetDeviceInfo(), "{}");
}

TEST_F(Identity, ChannelsAreThoseOfTheNameExactly) {
    for (const char* odd : {"kz", "KZ ", "K", "FERNO", "Steamy"}) {
        EXPECT_EQ(ChannelFacts(odd).kind, VESKChannelKind::kUnknown) << odd;
    }
}

using ObserverHolder = UnitTest;
using BaseHolder = VESKInnerObserverHolder<InnerBaseRet>;

TEST_F(ObserverHolder, ThreadsCommitWhileTheHandlerIsReplaced) {
    static std::atomic<int> delivered{0};
    const auto count = [](const InnerBaseRet& ret, const char* seqID) {
        delivered += ret.thirdMsg.c_str() == std::string(seqID) ? 1 : 1000;
    };
    BaseHolder::Register(7, count);
    onEightThreads([count](int thread) {
        InnerBaseRet ret(0);
        ret.thirdMsg = std::to_string(thread).c_str();
        for (int i = 0; i < 50; ++i) {
            BaseHolder::Register(thread == 0 ? 7 : 100 + thread, count);
            BaseHolder::CommitToTaskQueue(ret, 7, std::to_string(thread));
        }
    });
    EXPECT_EQ(delivered, 400);
}

} // namespace vesk::test
