#include "faults/faulttest.h"
#include "support/unloadtest.h"

namespace fs = std::filesystem;

namespace vesk::test {
namespace {

// A game that names the library by a relative path and then works elsewhere.
TEST(LibraryFolder, IsTheOneOfWhenTheLibraryWasLoaded) {
    const GameFolder game;
    const fs::path elsewhere = fs::current_path();
    const fs::path within = game.path() / "with a blank";
    fs::create_directories(within);
    fs::create_directory_symlink(within, game.path() / "link");
    const auto keep = [] {};
    const auto removeWithin = [&] { fs::remove(within); };
    const struct {
        fs::path from, folder;
        std::function<void()> beforeLoading, afterwards;
    } rows[] = {
        {game.path(), ".", keep, keep},
        {game.path(), "", keep, keep}, // found by the search path, an empty entry of which it is
        {elsewhere, "../" + game.path().filename().string(), keep, keep},
        {game.path(), "with a blank/..//.", keep, keep},
        {game.path(), "link/..", keep, keep},
        {within, "..", keep, removeWithin},
        {within, "..", removeWithin, keep},
        // Its own file is the link here: what belongs to it lies beside the link.
        {game.path(), ".",
         [&] {
             fs::create_directory(within);
             fs::rename(kSdkLibrary, within / kSdkLibrary);
             fs::create_symlink(within / kSdkLibrary, kSdkLibrary);
         },
         keep},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.folder.string() + " from " + row.from.string());
        fs::create_directories(within);
        fs::remove(game.loginCache());
        fs::remove(game.path() / "veskrecord.log");
        expectGame(VESKError::SUCCESS, [&] {
            RecordingObserver& observer = *new RecordingObserver;
            fs::current_path(row.from);
            row.beforeLoading();
            const LoadedSdk sdk(row.folder);
            fs::current_path(elsewhere);
            row.afterwards();
            sdk.setObserver(&observer);
            sdk.login("Steam");
            return observer.nextLogin().ret.retCode;
        });
        EXPECT_NE(readFile(game.loginCache()), "");
        EXPECT_NE(game.logLines("Start get login ret"), 0u);
    }
    std::printf("\nfaults: LibraryFolder.IsTheOneOfWhenTheLibraryWasLoaded: %zu rows\n",
                std::size(rows));
}

} // namespace
} // namespace vesk::test
