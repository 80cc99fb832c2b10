#include "foundation/lifecycle/vesklifecycleable.h"

#include "foundation/tools/veskobservermanager.h"
#include "unit/unittest.h"

namespace vesk::test {

using LifeCycle = UnitTest;

class Follower : public VESKLifeCycleAble {
public:
    void onCreate() override { heard += "create "; }
    void onStart() override { heard += "start "; }
    void onResume() override { heard += "resume "; }
    void onPause() override { heard += "pause "; }
    void onStop() override { heard += "stop"; }

    std::string heard;
};

TEST_F(LifeCycle, TagCallsTheHandlerOfExactlyThatName) {
    Follower follower;
    newMessages();
    for (const char* tag :
         {"onCreate", "onStart", "onResume", "onPause", "onstop", "onStop ", "%s", "", "onStop"}) {
        follower.Change(tag);
    }
    EXPECT_EQ(follower.heard, "create start resume pause stop");
    EXPECT_THAT(newMessages(),
                ElementsAre("onstop have not define yet", "onStop  have not define yet",
                            "%s have not define yet", "tag must not be empty"));
    EXPECT_EQ(logged("VESK [W.E]"), 1u);
}

TEST_F(LifeCycle, ObjectIsRegisteredFromConstructionToDestruction) {
    {
        Follower follower;
        VESKObserverManager::GetInstance()->AddObserver(&follower);
        VESKObserverManager::GetInstance()->RemoveObserver(&follower);
        VESKObserverManager::GetInstance()->RemoveObserver(&follower);
        VESKObserverManager::GetInstance()->AddObserver(&follower);
    }
    EXPECT_THAT(newMessages(),
                ElementsAre("VESKLifeCycleAble constructor", "already in set, no need insert again",
                            "not found, ignore this operate", "VESKLifeCycleAble ~~~~ "));
}

} // namespace vesk::test
