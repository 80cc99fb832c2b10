#ifndef GAME_CANVAS_H
#define GAME_CANVAS_H

#include <SDL.h>
#include <map>
#include <memory>
#include <set>
#include <stb_truetype.h>
#include <string>
#include <vector>

/// The window: what is drawn there, and what the player does there, frame by frame.
class Canvas {
public:
    /// Throws when there is no display, or no font beside the program.
    explicit Canvas(const char* title);

    static constexpr int kSmall = 20, kNormal = 26, kLarge = 44; ///< sizes of text
    static constexpr SDL_Color kBack{21, 25, 33, 255}, kPanel{38, 46, 60, 255};
    static constexpr SDL_Color kText{236, 240, 245, 255}, kDim{148, 163, 184, 255};
    static constexpr SDL_Color kAccent{56, 132, 244, 255}, kBad{244, 113, 116, 255};

    /// A frame begins with what the player has done and ends on the screen. @{
    void beginFrame();
    void endFrame(); ///@}

    void box(const SDL_Rect& box, const SDL_Color& colour);
    /// @param text UTF-8; "?" stands for what is not among the letters. @return its width
    int text(int x, int y, int size, const SDL_Color& colour, const std::string& text);
    /// Of normal size. Begins a new line behind the word that passes the width.
    void paragraph(const SDL_Rect& box, const SDL_Color& colour, const std::string& text);
    /// @return whether it has been pressed, with the mouse or its key
    bool button(const SDL_Rect& box, const std::string& label, SDL_Keycode key);

    bool isClosed() const { return mIsClosed; } ///< by the player
    SDL_Renderer* renderer() const { return mRenderer.get(); }

private:
    struct Letters { ///< of one size
        std::vector<stbtt_bakedchar> places;
        std::shared_ptr<SDL_Texture> picture;
    };

    std::shared_ptr<SDL_Window> mWindow;
    std::shared_ptr<SDL_Renderer> mRenderer;
    std::map<int, Letters> mLetters;
    std::set<SDL_Keycode> mKeys; ///< pressed in this frame
    SDL_Point mClick{-1, -1};
    uint64_t mFrameBegin = 0;
    bool mIsClosed = false;
};

#endif
