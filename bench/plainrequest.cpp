// Two of the options that the SDK sets are deprecated in newer versions of libcurl.
#define CURL_DISABLE_DEPRECATION
#include "plainrequest.h"

#include <cstdio>
#include <cstdlib>
#include <curl/curl.h>
#include <thread>

namespace vesk::bench {

namespace {

constexpr long kTimeoutSeconds = 15;

size_t receive(char* data, size_t size, size_t count, void* answer) {
    static_cast<std::string*>(answer)->append(data, size * count);
    return size * count;
}

} // namespace

void PlainRequest::post() const {
    CURL* handle = curl_easy_init();
    std::string answer;
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_NOPROGRESS, 1L);
    curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_REDIR_PROTOCOLS,
                     isSecure(url) ? CURLPROTO_HTTPS : CURLPROTO_HTTP | CURLPROTO_HTTPS);
    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYHOST, 2L);
    curl_easy_setopt(handle, CURLOPT_CAINFO, caFile.c_str());
    curl_easy_setopt(handle, CURLOPT_SHARE, share);
    curl_easy_setopt(handle, CURLOPT_CAPATH, nullptr);
    curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT, kTimeoutSeconds);
    curl_easy_setopt(handle, CURLOPT_TIMEOUT, kTimeoutSeconds);
    curl_easy_setopt(handle, CURLOPT_DNS_USE_GLOBAL_CACHE, 0L);
    curl_easy_setopt(handle, CURLOPT_DNS_CACHE_TIMEOUT, 60L);
    curl_easy_setopt(handle, CURLOPT_POST, 1L);
    curl_easy_setopt(handle, CURLOPT_UPLOAD, 0L);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &receive);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &answer);
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, nullptr);
    curl_easy_setopt(handle, CURLOPT_POSTFIELDS, body.data());
    curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
    const CURLcode result = curl_easy_perform(handle);
    long status = 0;
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
    curl_easy_cleanup(handle);
    // The backend answers what it refuses with 200 as well.
    if (result != CURLE_OK || status != 200 || answer.find("\"ret\":0") == std::string::npos) {
        std::fprintf(stderr, "plain request failed: %d, HTTP %ld, %s\n", static_cast<int>(result),
                     status, answer.c_str());
        std::exit(1);
    }
}

std::vector<PlainRequest> sharing(std::vector<PlainRequest> requests) {
    CURLSH* const share = curl_share_init();
    curl_share_setopt(share, CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION);
    for (PlainRequest& request : requests) {
        request.share = share;
    }
    return requests;
}

bool isSecure(const std::string& url) {
    return curl_strnequal(url.c_str(), "https:", 6) != 0;
}

void onNewThread(std::function<void()> work) {
    std::thread(std::move(work)).detach();
}

} // namespace vesk::bench
