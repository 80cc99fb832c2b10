#include "platformimpl/foundation/file/veskfileutils.h"

#include <fstream>

#include "module/veskmodule.h"
#include "support/files.h"
#include "unit/unittest.h"

namespace vesk::test {

class FileUtils : public UnitTest {
protected:
    const VESKFileUtils& files = *VESKFileUtils::GetInstance();
};

TEST_F(FileUtils, FilesAreTextBesideTheLibraryAndTheLogShowsPathAndContent) {
    const std::string path = files.GetLibraryDirectory() + "a.txt";
    EXPECT_TRUE(files.WriteFile("a.txt", "old and longer"));
    newMessages();
    EXPECT_TRUE(files.WriteFile("a.txt", "one\ntwo"));
    std::ofstream(folder / "line") << '\n';
    EXPECT_EQ(read("a.txt"), "one" + read("line") + "two");
    EXPECT_EQ(files.ReadFile("a.txt"), "one\ntwo");
    EXPECT_EQ(files.ReadConfigFile("a.txt"), "one\ntwo");
    EXPECT_TRUE(files.RemoveFile("a.txt"));
    EXPECT_FALSE(files.RemoveFile("a.txt"));
    EXPECT_EQ(files.ReadFile("a.txt"), "");
    EXPECT_THAT(newMessages(),
                ElementsAre("Write to file:" + path + " with data:one\ntwo", "Write file success!",
                            "Read file:" + path, "Read file success! Content:\none\ntwo",
                            "Read config file:" + path,
                            "Read config file success! Content:\none\ntwo", "Read file:" + path,
                            "Read file error! file path:" + path));
}

TEST_F(FileUtils, ZeroByteCutsTheRestOfItsPiece) {
    using namespace std::string_literals;
    // A piece ends at a line end or after 1023 bytes.
    write("lines", "abc\0def\nghi\n"s);
    EXPECT_EQ(files.ReadFile("lines"), "abcghi\n");
    write("long", std::string(500, 'x') + "\0"s + std::string(522, 'y') + std::string(977, 'z'));
    EXPECT_EQ(files.ReadFile("long"), std::string(500, 'x') + std::string(977, 'z'));
}

TEST_F(FileUtils, FileIsReplacedAtOneStrokeAndNothingIsLeftAside) {
    const std::string contents[] = {"short", std::string(100000, 'l')};
    EXPECT_TRUE(files.WriteFile("a.txt", contents[0]));
    onEightThreads([&](int thread) {
        for (int i = 0; i < 20; ++i) {
            if (thread < 2) {
                EXPECT_TRUE(files.WriteFile("a.txt", contents[thread]));
            } else if (thread < 4) {
                const std::string content = files.ReadFile("a.txt");
                EXPECT_TRUE(content == contents[0] || content == contents[1]) << content.size();
            }
        }
    });
    std::filesystem::create_directories(folder / "b.txt" / "full");
    EXPECT_FALSE(files.WriteFile("b.txt", "text"));
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        EXPECT_NE(entry.path().extension(), ".tmp") << entry.path();
    }
}

TEST_F(FileUtils, WithoutADirectoryNothingIsReadOrWritten) {
    VESKModule::UsePath("library");
    // In the working directory, where a bare name would lie; run-case.sh finds it empty afterwards.
    writeFile("a.txt", "text");
    EXPECT_EQ(files.ReadFile("a.txt"), "");
    EXPECT_EQ(files.ReadConfigFile("a.txt"), "");
    EXPECT_FALSE(files.WriteFile("b.txt", "text"));
    EXPECT_FALSE(files.RemoveFile("a.txt"));
    EXPECT_TRUE(std::filesystem::remove("a.txt"));

    write("a.txt", "found later");
    VESKModule::UsePath((folder / "library").make_preferred().string());
    EXPECT_EQ(files.ReadFile("a.txt"), "found later");
}

} // namespace vesk::test
