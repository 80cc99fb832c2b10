#include "logreader.h"

#include <gmock/gmock.h>

#include "logread/logbytes.h"
#include "support/files.h"

namespace vesk::test {
namespace {

using namespace logread;
using ::testing::ElementsAre;

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
