#define STB_TRUETYPE_IMPLEMENTATION
#include "canvas.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <stdexcept>

namespace {

// Latin, Greek and Cyrillic. Take more, and another font, for players of other scripts.
constexpr int kFirstLetter = 0x20, kLetters = 0x510;
constexpr int kSide = 1024; // of the picture with all letters

template <typename Object>
std::shared_ptr<Object> owned(Object* object, void (*destroy)(Object*)) {
    if (object == nullptr) {
        throw std::runtime_error(SDL_GetError());
    }
    return {object, destroy};
}

} // namespace

Canvas::Canvas(const char* title) {
    SDL_SetHint(SDL_HINT_RENDER_VSYNC, "1");
    SDL_Window* window = nullptr;
    SDL_Renderer* renderer = nullptr;
    SDL_CreateWindowAndRenderer(960, 600, 0, &window, &renderer);
    const char* const driver = SDL_GetCurrentVideoDriver();
    if (driver != nullptr && std::string(driver) == "offscreen") { // nobody would see the game
        throw std::runtime_error("there is no display");
    }
    mWindow = owned(window, &SDL_DestroyWindow);
    mRenderer = owned(renderer, &SDL_DestroyRenderer);
    SDL_SetWindowTitle(window, title);
    const std::shared_ptr<void> folder = owned<void>(SDL_GetBasePath(), &SDL_free);
    const std::string file = static_cast<char*>(folder.get()) + std::string("OpenSans-Regular.ttf");
    const std::shared_ptr<void> font = owned(SDL_LoadFile(file.c_str(), nullptr), &SDL_free);
    for (const int size : {kSmall, kNormal, kLarge}) {
        Letters& letters = mLetters[size];
        letters.places.resize(kLetters);
        std::vector<uint8_t> alpha(size_t{kSide} * kSide);
        stbtt_BakeFontBitmap(static_cast<uint8_t*>(font.get()), 0, static_cast<float>(size),
                             alpha.data(), kSide, kSide, kFirstLetter, kLetters,
                             letters.places.data());
        std::vector<uint32_t> pixels(alpha.size());
        std::transform(alpha.begin(), alpha.end(), pixels.begin(),
                       [](uint32_t covered) { return 0xFFFFFF | covered << 24; });
        letters.picture = owned(SDL_CreateTexture(mRenderer.get(), SDL_PIXELFORMAT_ARGB8888,
                                                  SDL_TEXTUREACCESS_STATIC, kSide, kSide),
                                &SDL_DestroyTexture);
        SDL_UpdateTexture(letters.picture.get(), nullptr, pixels.data(), 4 * kSide);
        SDL_SetTextureBlendMode(letters.picture.get(), SDL_BLENDMODE_BLEND);
    }
}

void Canvas::beginFrame() {
    mFrameBegin = SDL_GetTicks64();
    mKeys.clear();
    mClick = {-1, -1};
    SDL_Event event;
    while (SDL_PollEvent(&event) != 0) {
        if (event.type == SDL_QUIT) {
            mIsClosed = true;
        } else if (event.type == SDL_KEYDOWN && event.key.repeat == 0) {
            mKeys.insert(event.key.keysym.sym);
        } else if (event.type == SDL_MOUSEBUTTONDOWN) {
            mClick = {event.button.x, event.button.y};
        }
    }
    box({0, 0, 960, 600}, kBack);
}

void Canvas::endFrame() {
    SDL_RenderPresent(mRenderer.get());
    // Not every driver waits for the screen, and a login screen need not take a whole core.
    constexpr uint64_t kShortest = 8; // milliseconds
    const uint64_t length = SDL_GetTicks64() - mFrameBegin;
    if (length < kShortest) {
        SDL_Delay(static_cast<uint32_t>(kShortest - length));
    }
}

void Canvas::box(const SDL_Rect& box, const SDL_Color& colour) {
    SDL_SetRenderDrawColor(mRenderer.get(), colour.r, colour.g, colour.b, colour.a);
    SDL_RenderFillRect(mRenderer.get(), &box);
}

int Canvas::text(int x, int y, int size, const SDL_Color& colour, const std::string& text) {
    const Letters& letters = mLetters.at(size);
    SDL_SetTextureColorMod(letters.picture.get(), colour.r, colour.g, colour.b);
    const std::unique_ptr<char, decltype(&SDL_free)> wide(
        SDL_iconv_string("UTF-32LE", "UTF-8", text.c_str(), text.size() + 1), &SDL_free);
    float pen = 0;
    for (auto* next = reinterpret_cast<uint32_t*>(wide.get()); next && *next != 0; ++next) {
        const uint32_t letter = *next - kFirstLetter;
        const stbtt_bakedchar& place =
            letters.places[letter < kLetters ? letter : '?' - kFirstLetter];
        const SDL_Rect from{place.x0, place.y0, place.x1 - place.x0, place.y1 - place.y0};
        const SDL_Rect to{x + static_cast<int>(std::lround(pen + place.xoff)),
                          y + size * 4 / 5 + static_cast<int>(place.yoff), from.w, from.h};
        SDL_RenderCopy(mRenderer.get(), letters.picture.get(), &from, &to);
        pen += place.xadvance;
    }
    return static_cast<int>(pen);
}

void Canvas::paragraph(const SDL_Rect& box, const SDL_Color& colour, const std::string& text) {
    std::istringstream words(text);
    SDL_Point at{box.x, box.y};
    for (std::string word; words >> word;) {
        at.x += this->text(at.x, at.y, kNormal, colour, word) + kNormal / 4;
        if (at.x > box.x + box.w) {
            at = {box.x, at.y + kNormal};
        }
    }
}

bool Canvas::button(const SDL_Rect& box, const std::string& label, SDL_Keycode key) {
    SDL_Point mouse;
    SDL_GetMouseState(&mouse.x, &mouse.y);
    this->box(box, SDL_PointInRect(&mouse, &box) ? kAccent : kPanel);
    const int y = box.y + (box.h - kNormal) / 2;
    const int hint = text(box.x + 20, y, kNormal, kDim, SDL_GetKeyName(key));
    text(box.x + 36 + hint, y, kNormal, kText, label);
    return SDL_PointInRect(&mClick, &box) || mKeys.count(key) != 0;
}
