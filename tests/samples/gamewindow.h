#ifndef VESK_TESTS_SAMPLES_GAMEWINDOW_H
#define VESK_TESTS_SAMPLES_GAMEWINDOW_H

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <vector>

#include "devkit/scanpagetest.h"

namespace vesk::test {

/// samples/game on a screen of its own, for Linux or under Wine, with a player who has only that
/// screen and the keyboard. It quits by its key at the end of each case.
class GameWindow : public ::testing::Test {
protected:
    static constexpr int kWidth = 960, kHeight = 600;
    static constexpr int kNormal = 26, kLarge = 44; ///< sizes of the game's text

    void SetUp() override;
    void TearDown() override;

    /// Waits until the text is on the screen, and tells where.
    std::pair<int, int> await(const std::string& text, int size = kNormal);
    bool isShown(const std::string& text, int size = kNormal) {
        return find(text, size).has_value();
    }
    /// What a telephone reads on the screen; empty when it does not.
    std::string scan();

    void press(const std::string& key) const { act("key " + key); }
    void click(const std::pair<int, int>& place) const;

    /// Keeps the screen as docs/game-NAME.png would show it, in VESK_SCREENSHOTS.
    void keep(const std::string& name);

    const ScanPlayer player{};
    const GameFolder game;
    BackendControl backend{player.url};

    /// Red, green and blue of each pixel, row by row.
    std::vector<uint8_t> look();

private:
    std::optional<std::pair<int, int>> find(const std::string& text, int size);
    static void act(const std::string& words);

    FILE *mScreen = nullptr, *mGame = nullptr;
    int mScreenProcess = 0;
    std::shared_ptr<void> mDisplay; ///< Xlib's, whose macros stay out of here
};

} // namespace vesk::test

#endif
