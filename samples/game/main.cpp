#include <algorithm>
#include <ctime>
#include <deque>
#include <exception>

#include "canvas.h"
#include "login.h"
#include "picture.h"

namespace {

/// A game that has a login and nothing else: what the player sees, by the state of the login.
class Game {
public:
    /// One loop, and everything is called from it. Returns when the player leaves.
    void run() {
        uint64_t before = SDL_GetTicks64();
        for (bool isPlaying = true; isPlaying && !mCanvas.isClosed();) {
            const uint64_t now = SDL_GetTicks64();
            mCanvas.beginFrame();
            mLogin.update();
            const vesk::Stage stage = mLogin.state().stage;
            mQrCode.want(stage == vesk::Stage::waitingForScan ? mLogin.qrCodeUrl() : "");
            mFace.want(stage == vesk::Stage::signedIn ? mLogin.player().pictureUrl : "");
            if (stage == vesk::Stage::signedOut) {
                drawStart();
            } else if (stage == vesk::Stage::signedIn || stage == vesk::Stage::expired) {
                drawPlayer();
            } else {
                drawWaiting();
            }
            isPlaying = !mCanvas.button({700, 40, 200, 56}, "Quit", SDLK_q);
            drawFrameTimes(now - before);
            mCanvas.endFrame();
            before = now;
        }
        mLogin.back();
        const uint64_t latest = SDL_GetTicks64() + 3000; // a logout has 3 seconds
        while (SDL_GetTicks64() < latest && !mLogin.isIdle()) {
            mCanvas.beginFrame();
            mCanvas.text(60, 40, Canvas::kLarge, Canvas::kText, "Leaving ...");
            mCanvas.endFrame();
        }
    }

private:
    void drawStart() {
        mCanvas.text(60, 40, Canvas::kLarge, Canvas::kText, "Sign in to play");
        int y = 130;
        for (const char* channel : {"Steam", "KZ", "Ferno"}) {
            if (mCanvas.button({60, y, 400, 64}, channel, SDL_tolower(*channel))) {
                mLogin.start(channel);
            }
            y += 80;
        }
        mCanvas.paragraph({60, 390, 700, 0}, Canvas::kBad, mLogin.failure());
    }

    void drawWaiting() {
        const std::string channel = mLogin.state().channel;
        mCanvas.text(60, 40, Canvas::kLarge, Canvas::kText, "Signing in through " + channel);
        if (mCanvas.button({60, 130, 400, 64}, "Back", SDLK_ESCAPE)) {
            mLogin.back();
        }
        if (SDL_Texture* const picture = mQrCode.texture(mCanvas.renderer())) {
            mCanvas.paragraph({60, 240, 320, 0}, Canvas::kText,
                              "Scan this picture with the " + channel + " app on your phone.");
            // By a whole factor: modules of different widths are hard to read.
            SDL_Rect place{530, 120, 0, 0};
            SDL_QueryTexture(picture, nullptr, nullptr, &place.w, &place.h);
            const int factor = std::max(1, 380 / std::max(place.w, place.h));
            place.w *= factor;
            place.h *= factor;
            SDL_RenderCopy(mCanvas.renderer(), picture, nullptr, &place);
        }
        mCanvas.paragraph({60, 240, 320, 0}, Canvas::kBad, mQrCode.problem());
    }

    void drawPlayer() {
        const vesk::State& state = mLogin.state();
        const bool isExpired = state.stage == vesk::Stage::expired;
        const auto expiry = static_cast<time_t>(state.tokenExpire);
        char until[64] = "Without an end";
        if (expiry != 0) {
            std::strftime(until, sizeof until, "Until %Y-%m-%d %H:%M:%S", std::localtime(&expiry));
        }
        const SDL_Rect face{60, 130, 160, 160};
        mCanvas.box(face, Canvas::kPanel);
        if (SDL_Texture* const picture = mFace.texture(mCanvas.renderer())) {
            SDL_RenderCopy(mCanvas.renderer(), picture, nullptr, &face);
        }
        mCanvas.text(60, 40, Canvas::kLarge, Canvas::kText, "Welcome");
        mCanvas.text(250, 126, Canvas::kLarge, Canvas::kText, mLogin.player().userName);
        mCanvas.text(250, 190, Canvas::kNormal, Canvas::kDim, state.openid);
        mCanvas.text(250, 226, Canvas::kNormal, isExpired ? Canvas::kBad : Canvas::kText,
                     (isExpired ? "Expired: was in through " : "Signed in through ") +
                         state.channel);
        mCanvas.text(250, 262, Canvas::kNormal, Canvas::kDim, until);
        if (mCanvas.button({60, 320, 400, 64}, "Log out", SDLK_l)) {
            mLogin.logOut();
        }
        mCanvas.paragraph({60, 400, 700, 0}, Canvas::kBad, mLogin.failure());
    }

    void drawFrameTimes(uint64_t milliseconds) {
        mFrameTimes.pop_front();
        mFrameTimes.push_back(milliseconds);
        const uint64_t longest = *std::max_element(mFrameTimes.begin(), mFrameTimes.end());
        mCanvas.text(60, 550, Canvas::kSmall, Canvas::kDim,
                     "longest of 240 frames: " + std::to_string(longest) + " ms");
        int x = 420;
        for (const uint64_t time : mFrameTimes) {
            const int height = static_cast<int>(std::min<uint64_t>(time, 60));
            mCanvas.box({x, 570 - height, 2, height}, time < 20 ? Canvas::kAccent : Canvas::kBad);
            x += 2;
        }
    }

    Canvas mCanvas{"Login"};
    Login mLogin;
    Picture mQrCode, mFace;
    std::deque<uint64_t> mFrameTimes = std::deque<uint64_t>(240); ///< in milliseconds
};

} // namespace

int main(int /*count*/, char** /*arguments*/) try {
    Game().run();
    vesk::uninstall();
    SDL_Quit();
    return 0;
} catch (const std::exception& error) {
    SDL_Log("The game ends: %s", error.what());
    return 1;
}
