#define STB_TRUETYPE_IMPLEMENTATION
#define STBTT_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#include "samples/gamewindow.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <stb_image_write.h>
#include <stb_truetype.h>

#include "devkit/qrreader.h"

// The last: its macros have everyday names.
#include <X11/Xutil.h>

namespace vesk::test {
namespace {

/// How much of each pixel the text covers, as the game places its letters. ASCII and Latin-1.
struct Mask {
    int width = 0, height = 0;
    std::vector<uint8_t> covered;
};

Mask maskOf(const std::string& text, int size) {
    constexpr int kSide = 1024;
    constexpr int kFirst = 0x20;
    static const std::string font =
        readFile(environment("VESK_TEST_FOLDER") + "/OpenSans-Regular.ttf");
    std::vector<uint8_t> letters(size_t{kSide} * kSide);
    std::vector<stbtt_bakedchar> places(0x7F - kFirst);
    stbtt_BakeFontBitmap(reinterpret_cast<const uint8_t*>(font.data()), 0, static_cast<float>(size),
                         letters.data(), kSide, kSide, kFirst, static_cast<int>(places.size()),
                         places.data());
    Mask mask{static_cast<int>(text.size()) * size, 2 * size, {}};
    mask.covered.resize(static_cast<size_t>(mask.width) * mask.height);
    float pen = 0;
    for (const char letter : text) {
        const stbtt_bakedchar& place = places.at(static_cast<size_t>(letter - kFirst));
        for (int row = place.y0; row < place.y1; ++row) {
            for (int column = place.x0; column < place.x1; ++column) {
                const auto x = std::lround(pen + place.xoff) + column - place.x0;
                const auto y = size + static_cast<int>(place.yoff) + row - place.y0;
                if (x >= 0) {
                    uint8_t& covered = mask.covered[y * mask.width + x];
                    covered = std::max(covered, letters[row * kSide + column]);
                }
            }
        }
        pen += place.xadvance;
    }
    return mask;
}

} // namespace

void GameWindow::SetUp() {
    const std::string folder = game.path().string();
    mScreen = popen(
        "echo $$; exec Xvfb -displayfd 1 -nolisten tcp -screen 0 960x600x24 2>/dev/null", "r");
    char numbers[2][16] = {"", ""}; // of the process and of the display
    ASSERT_NE(std::fgets(numbers[0], sizeof numbers[0], mScreen), nullptr);
    mScreenProcess = std::atoi(numbers[0]);
    ASSERT_NE(std::fgets(numbers[1], sizeof numbers[1], mScreen), nullptr);
    setenv("DISPLAY", (":" + std::to_string(std::atoi(numbers[1]))).c_str(), 1);
    mDisplay.reset(XOpenDisplay(nullptr),
                   [](void* display) { XCloseDisplay(static_cast<Display*>(display)); });
    ASSERT_NE(mDisplay, nullptr);

    game.configure("FERNO_APP_ID=f\nKZ_APP_ID=k\nKZ_APP_KEY=k\n");
    writeFile(game.path() / "ferno_sim.ini", "interactive=" + player.url + "\n");
    writeFile(game.path() / "kz_sim.ini", "interactive=" + player.url + "\nopenid=kz-1\n");
    // By the processor, so that both systems draw the same.
    const std::string launcher = environment("VESK_GAME_LAUNCHER");
    mGame = popen(("cd '" + folder + "' && SDL_RENDER_DRIVER=software exec " + launcher +
                   " ./vesk-game* >game.txt 2>&1")
                      .c_str(),
                  "r");
    await("Sign in to play", kLarge);
}

void GameWindow::TearDown() {
    press("q");
    EXPECT_EQ(pclose(mGame), 0) << readFile(game.path() / "game.txt");
    mDisplay.reset();
    kill(mScreenProcess, SIGTERM);
    pclose(mScreen);
}

std::vector<uint8_t> GameWindow::look() {
    auto* const display = static_cast<Display*>(mDisplay.get());
    XImage* const image =
        XGetImage(display, DefaultRootWindow(display), 0, 0, kWidth, kHeight, AllPlanes, ZPixmap);
    std::vector<uint8_t> pixels;
    for (int i = 0; i < kWidth * kHeight; ++i) {
        const unsigned long pixel = XGetPixel(image, i % kWidth, i / kWidth);
        for (const int shift : {16, 8, 0}) {
            pixels.push_back(static_cast<uint8_t>(pixel >> shift));
        }
    }
    XDestroyImage(image);
    return pixels;
}

/// The letters have one colour, and all between them another.
std::optional<std::pair<int, int>> GameWindow::find(const std::string& text, int size) {
    const Mask mask = maskOf(text, size);
    std::vector<int> letters; // where they are, as seen from the mask's corner
    std::vector<int> gaps;
    for (int i = 0; i < mask.width * mask.height; ++i) {
        const int place = i / mask.width * kWidth + i % mask.width;
        if (mask.covered[i] > 230) {
            letters.push_back(place);
        } else if (mask.covered[i] == 0 && !letters.empty() && i > 0 && mask.covered[i - 1] > 0) {
            gaps.push_back(place);
        }
    }
    const std::vector<uint8_t> screen = look();
    const auto differs = [&](int one, int other) {
        int sum = 0;
        for (int i = 0; i < 3; ++i) {
            sum += std::abs(screen[3 * one + i] - screen[3 * other + i]);
        }
        return sum > 120;
    };
    const int last = kWidth * kHeight - std::max(letters.back(), gaps.back());
    for (int corner = 0; corner < last; ++corner) {
        const int ink = corner + letters.front();
        bool fits = differs(ink, corner + gaps.front());
        for (size_t i = 0; fits && i < letters.size(); ++i) {
            fits = !differs(ink, corner + letters[i]);
        }
        for (size_t i = 0; fits && i < gaps.size(); ++i) {
            fits = differs(ink, corner + gaps[i]);
        }
        if (fits) {
            return std::make_pair(ink % kWidth, ink / kWidth);
        }
    }
    return std::nullopt;
}

std::pair<int, int> GameWindow::await(const std::string& text, int size) {
    std::optional<std::pair<int, int>> place;
    waitUntil("the text " + text, [&] { return (place = find(text, size)).has_value(); });
    return *place;
}

std::string GameWindow::scan() {
    const std::vector<uint8_t> screen = look();
    std::vector<uint8_t> grey;
    for (size_t i = 0; i < screen.size(); i += 3) {
        grey.push_back(screen[i]);
    }
    return textOfPixels(grey.data(), kWidth, kHeight);
}

void GameWindow::click(const std::pair<int, int>& place) const {
    act("mousemove " + std::to_string(place.first) + " " + std::to_string(place.second) +
        " click 1");
}

void GameWindow::act(const std::string& words) {
    ASSERT_EQ(std::system(("xdotool " + words).c_str()), 0);
}

void GameWindow::keep(const std::string& name) {
    if (const char* const folder = std::getenv("VESK_SCREENSHOTS")) {
        const std::string file = std::string(folder) + "/game-" + name + ".png";
        ASSERT_NE(stbi_write_png(file.c_str(), kWidth, kHeight, 3, look().data(), 3 * kWidth), 0);
    }
}

} // namespace vesk::test
