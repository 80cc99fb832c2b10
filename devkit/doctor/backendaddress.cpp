#include "backendaddress.h"

#include <curl/curl.h>
#include <memory>

namespace vesk::doctor {

namespace {

using Url = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;

std::string partOf(const Url& url, CURLUPart part, unsigned flags = 0) {
    char* text = nullptr;
    if (curl_url_get(url.get(), part, &text, flags) != CURLUE_OK) {
        return {};
    }
    std::string result = text;
    curl_free(text);
    return result;
}

} // namespace

BackendAddress::BackendAddress(const std::string& text) {
    const Url url(curl_url(), &curl_url_cleanup);
    const bool parsed = curl_url_set(url.get(), CURLUPART_URL, text.c_str(), 0) == CURLUE_OK;
    mScheme = partOf(url, CURLUPART_SCHEME);
    mHost = partOf(url, CURLUPART_HOST);
    mPort = partOf(url, CURLUPART_PORT, CURLU_DEFAULT_PORT);
    mHasPath = text.find_first_of("/?", text.find("://") + 3) != std::string::npos;
    mValid = parsed && (mScheme == "https" || mScheme == "http");
    // What cannot be parsed may have a password all the same.
    const size_t at = text.rfind('@');
    const std::string user = partOf(url, CURLUPART_USER) + partOf(url, CURLUPART_PASSWORD);
    const bool hides = at != std::string::npos && !(parsed && user.empty());
    mShown = '"' + (hides ? "***" + text.substr(at) : text) + '"';
}

bool BackendAddress::isLocal() const {
    return mHost == "localhost" || mHost == "[::1]" || mHost.compare(0, 4, "127.") == 0;
}

} // namespace vesk::doctor
