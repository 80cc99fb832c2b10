#include "picture.h"

#include <curl/curl.h>

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_NO_STDIO
#define STBI_ONLY_JPEG
#define STBI_ONLY_PNG
#define STBI_MAX_DIMENSIONS 4096
#include <stb_image.h>

namespace {

size_t append(char* data, size_t size, size_t count, void* bytes) {
    auto& picture = *static_cast<std::string*>(bytes);
    picture.append(data, size * count);
    return picture.size() > 1024 * 1024 ? 0 : size * count; // 0 ends the transfer
}

} // namespace

Picture::Pixels Picture::load(const std::string& address) {
    std::string bytes;
    Pixels picture;
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> request(curl_easy_init(),
                                                                      &curl_easy_cleanup);
    curl_easy_setopt(request.get(), CURLOPT_URL, address.c_str());
    curl_easy_setopt(request.get(), CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(request.get(), CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(request.get(), CURLOPT_FAILONERROR, 1L);
    curl_easy_setopt(request.get(), CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(request.get(), CURLOPT_TIMEOUT, 5L);
    curl_easy_setopt(request.get(), CURLOPT_WRITEFUNCTION, &append);
    curl_easy_setopt(request.get(), CURLOPT_WRITEDATA, &bytes);
    const CURLcode code = curl_easy_perform(request.get());
    if (code != CURLE_OK) {
        picture.problem = std::string("No picture comes: ") + curl_easy_strerror(code) + ".";
        return picture;
    }
    picture.rgba.reset(stbi_load_from_memory(reinterpret_cast<const uint8_t*>(bytes.data()),
                                             static_cast<int>(bytes.size()), &picture.width,
                                             &picture.height, nullptr, 4),
                       &stbi_image_free);
    picture.problem = picture.rgba == nullptr ? "The game cannot read the picture." : "";
    return picture;
}

void Picture::want(const std::string& address) {
    if (address == mAddress) {
        return;
    }
    if (mLoading.valid()) {
        mEnding.push_back(std::move(mLoading));
    }
    mAddress = address;
    mProblem.clear();
    mTexture.reset();
    if (!address.empty()) {
        mLoading = std::async(std::launch::async, &Picture::load, address);
    }
}

SDL_Texture* Picture::texture(SDL_Renderer* renderer) {
    using namespace std::chrono_literals;
    if (mLoading.valid() && mLoading.wait_for(0s) == std::future_status::ready) {
        const Pixels picture = mLoading.get();
        mProblem = picture.problem;
        if (picture.rgba != nullptr) {
            SDL_Texture* const texture =
                SDL_CreateTexture(renderer, SDL_PIXELFORMAT_RGBA32, SDL_TEXTUREACCESS_STATIC,
                                  picture.width, picture.height);
            mTexture.reset(texture, &SDL_DestroyTexture);
            SDL_UpdateTexture(mTexture.get(), nullptr, picture.rgba.get(), 4 * picture.width);
        }
    }
    return mTexture.get();
}
