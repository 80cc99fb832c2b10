#ifndef GAME_PICTURE_H
#define GAME_PICTURE_H

#include <SDL.h>
#include <cstdint>
#include <future>
#include <memory>
#include <string>
#include <vector>

/// A picture from the network. It is downloaded and decoded on a thread of its own, and the frame
/// loop looks whether it is there.
class Picture {
public:
    Picture() = default;
    /// Waits for downloads that are under way, five seconds at most: for the end of the program.
    ~Picture() = default;
    Picture(const Picture&) = delete;

    /// Says which picture is wanted from now on; empty: none. Costs nothing when that is no news.
    void want(const std::string& address);

    /// The picture, or null: it is not there yet, or will never be.
    SDL_Texture* texture(SDL_Renderer* renderer);
    /// Why it will never be there; or empty.
    const std::string& problem() const { return mProblem; }

private:
    struct Pixels {
        int width = 0, height = 0;
        std::shared_ptr<uint8_t> rgba;
        std::string problem;
    };
    static Pixels load(const std::string& address);

    std::string mAddress, mProblem;
    std::future<Pixels> mLoading;
    std::vector<std::future<Pixels>> mEnding; ///< the end of a future waits for its thread
    std::shared_ptr<SDL_Texture> mTexture;
};

#endif
