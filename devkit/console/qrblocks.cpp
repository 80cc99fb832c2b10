#include "qrblocks.h"

#include <algorithm>
#include <cmath>
#include <curl/curl.h>
#include <memory>

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_NO_STDIO
#define STBI_ONLY_JPEG
#define STBI_ONLY_PNG
#define STBI_MAX_DIMENSIONS 4096
#include <stb_image.h>

namespace {

constexpr size_t kMaxPicture = 1024 * 1024;
constexpr int kQuietZone = 4;
/// A finder pattern's side, in modules.
constexpr float kFinder = 7;
// From the fixed part of the palette: themes change the first sixteen colours.
constexpr const char* kWhiteOnBlack = "\x1b[38;5;231;48;5;16m";
constexpr const char* kReset = "\x1b[0m";

size_t appendPicture(char* data, size_t size, size_t count, void* body) {
    auto& picture = *static_cast<std::string*>(body);
    picture.append(data, size * count);
    return picture.size() > kMaxPicture ? 0 : size * count;
}

bool isDark(stbi_uc pixel) {
    return pixel < 128;
}

/// What is on a picture, module by module: measured at the upper edge, between the outer corners of
/// the two finder patterns.
class Code {
public:
    explicit Code(const std::string& picture)
        : mPixels(stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(picture.data()),
                                        static_cast<int>(picture.size()), &mWidth, &mHeight,
                                        nullptr, 1),
                  &stbi_image_free) {
        const stbi_uc* const begin = mPixels.get();
        const stbi_uc* const end = begin + (mPixels ? mWidth * mHeight : 0);
        mTopLeft = std::find_if(begin, end, isDark);
        if (mTopLeft == end) {
            return;
        }
        const stbi_uc* const rowEnd = end - (end - mTopLeft - 1) / mWidth * mWidth;
        const stbi_uc* const finderEnd = std::find_if_not(mTopLeft, rowEnd, isDark);
        const stbi_uc* codeEnd = rowEnd;
        while (!isDark(codeEnd[-1])) {
            --codeEnd;
        }
        const auto width = static_cast<float>(codeEnd - mTopLeft);
        const auto side = std::lround(width * kFinder / static_cast<float>(finderEnd - mTopLeft));
        const bool isWhole = (end - mTopLeft - 1) / mWidth + 1 >= codeEnd - mTopLeft;
        if (isWhole && side >= 21 && side <= 177 && side % 4 == 1) {
            mSide = static_cast<int>(side);
            mModule = width / static_cast<float>(side);
        }
    }

    /// In modules; 0 when there is no code.
    int side() const { return mSide; }

    /// Whether a module is light; the quiet zone is, and so is everything beyond it.
    bool isLight(int row, int column) const {
        const bool inside = row >= 0 && column >= 0 && row < mSide && column < mSide;
        return !inside || !isDark(mTopLeft[middleOf(row) * mWidth + middleOf(column)]);
    }

private:
    /// Pixels from the code's edge to the middle of a module.
    int middleOf(int module) const {
        return static_cast<int>((static_cast<float>(module) + 0.5F) * mModule);
    }

    int mWidth = 0;
    int mHeight = 0;
    std::unique_ptr<stbi_uc, decltype(&stbi_image_free)> mPixels;
    const stbi_uc* mTopLeft = nullptr;
    float mModule = 0;
    int mSide = 0;
};

const char* block(bool upper, bool lower) {
    if (upper) {
        return lower ? "\u2588" : "\u2580";
    }
    return lower ? "\u2584" : " ";
}

} // namespace

std::string fetchPicture(const std::string& address, std::string& problem) {
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> request(curl_easy_init(),
                                                                      &curl_easy_cleanup);
    std::string picture;
    curl_easy_setopt(request.get(), CURLOPT_URL, address.c_str());
    curl_easy_setopt(request.get(), CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(request.get(), CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(request.get(), CURLOPT_FAILONERROR, 1L);
    curl_easy_setopt(request.get(), CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(request.get(), CURLOPT_TIMEOUT, 5L);
    curl_easy_setopt(request.get(), CURLOPT_WRITEFUNCTION, &appendPicture);
    curl_easy_setopt(request.get(), CURLOPT_WRITEDATA, &picture);
    const CURLcode code = curl_easy_perform(request.get());
    if (code != CURLE_OK) {
        problem = std::string("the picture does not come, ") + curl_easy_strerror(code);
        picture.clear();
    }
    return picture;
}

std::string qrBlocks(const std::string& picture, bool colours) {
    const Code code(picture);
    std::string blocks;
    const int end = code.side() > 0 ? code.side() + kQuietZone : -kQuietZone;
    for (int row = -kQuietZone; row < end; row += 2) {
        blocks += colours ? kWhiteOnBlack : "";
        for (int column = -kQuietZone; column < end; ++column) {
            blocks += block(code.isLight(row, column), code.isLight(row + 1, column));
        }
        blocks += colours ? kReset : "";
        blocks += '\n';
    }
    return blocks;
}
