#include <functional>

#include "flow/unloadtest.h"
#include "support/messenger.h"
#include "support/waituntil.h"

namespace vesk::test {
namespace {

using LibraryClose = Unload;

constexpr const char* kGood = R"({"ret":0,"openid":"o","uid":"u","token":"t"})";

// A game that frees the library without UnInstall: what is still under way keeps the code.
TEST_F(LibraryClose, LetsWhatIsUnderWayEnd) {
    const struct {
        const char* name;
        int delayMs;
        bool answered; ///< before the library is freed
    } rows[] = {
        {"a request in flight", 500, false},
        {"a timer asleep", 0, true},
        {"a timer that stops and a request in flight", 500, false},
    };
    sdk.close();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const LoadedSdk another(game.path());
        another.setObserver(&observer);
        backend.next({"auth/login", kGood, 200, row.delayMs});
        another.login("Steam");
        if (row.answered) {
            observer.nextLogin();
        }
        another.close();
        if (!row.answered) {
            EXPECT_EQ(observer.nextLogin().ret.retCode, VESKError::SUCCESS);
        }
    }
    std::printf("\nfaults: LibraryClose.LetsWhatIsUnderWayEnd: %zu rows\n", std::size(rows));
}

} // namespace
} // namespace vesk::test
