#include "common/veskdefine.h"

#include <atomic>

#include "unit/unittest.h"

namespace vesk::test {

class ObserverHolder : public UnitTest {
protected:
    using BaseHolder = VESKInnerObserverHolder<InnerBaseRet>;
    using LoginHolder = VESKInnerObserverHolder<InnerLoginRet>;

    static void first(const InnerBaseRet&, const char*) { heard += "first "; }
    static void second(const InnerBaseRet& ret, const char* seqID) {
        heard += std::to_string(ret.retCode) + ":" + seqID + ":" + ret.thirdMsg.c_str() + " ";
    }
    static void count(const InnerBaseRet& ret, const char* seqID) {
        delivered += ret.thirdMsg.c_str() == std::string(seqID) ? 1 : 1000;
    }

    inline static std::string heard;
    inline static std::atomic<int> delivered{0};
};

TEST_F(ObserverHolder, DeliversToTheLastHandlerOfTheIdBeforeCommitReturns) {
    BaseHolder::Register(7, &first);
    BaseHolder::Register(7, &second);
    BaseHolder::Register(8, &first);
    InnerBaseRet ret(5);
    ret.thirdMsg = "third";
    BaseHolder::CommitToTaskQueue(ret, 7, "s1");
    BaseHolder::CommitToTaskQueue(ret, 7, "");
    EXPECT_EQ(heard, "5:s1:third 5::third ");
}

TEST_F(ObserverHolder, ResultWithoutAHandlerIsLost) {
    BaseHolder::CommitToTaskQueue(InnerBaseRet(5), 7, "lost");
    BaseHolder::Register(7, &second);
    LoginHolder::CommitToTaskQueue(InnerLoginRet(5), 7, "of another type");
    BaseHolder::CommitToTaskQueue(InnerBaseRet(6), 7, "kept");
    EXPECT_EQ(heard, "6:kept: ");
}

TEST_F(ObserverHolder, ThreadsCommitWhileTheHandlerIsReplaced) {
    BaseHolder::Register(7, &count);
    onEightThreads([](int thread) {
        InnerBaseRet ret(0);
        ret.thirdMsg = std::to_string(thread).c_str();
        for (int i = 0; i < 50; ++i) {
            BaseHolder::Register(thread == 0 ? 7 : 100 + thread, &count);
            BaseHolder::CommitToTaskQueue(ret, 7, std::to_string(thread));
        }
    });
    EXPECT_EQ(delivered, 400);
}

} // namespace vesk::test
