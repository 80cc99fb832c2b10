#include "controlport.h"

#include <curl/curl.h>
#include <memory>
#include <stdexcept>

namespace vesk::test {
namespace {

size_t append(char* data, size_t size, size_t count, void* text) {
    static_cast<std::string*>(text)->append(data, size * count);
    return size * count;
}

} // namespace

ControlAnswer callControlPort(const std::string& url, const std::string* body,
                              const std::vector<std::string>& headers) {
    ControlAnswer answer;
    curl_slist* list = nullptr;
    for (const std::string& header : headers) {
        list = curl_slist_append(list, header.c_str());
    }
    const std::unique_ptr<CURL, void (*)(CURL*)> curl(curl_easy_init(), curl_easy_cleanup);
    curl_easy_setopt(curl.get(), CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl.get(), CURLOPT_NOPROXY, "*");
    curl_easy_setopt(curl.get(), CURLOPT_TIMEOUT, 30L);
    curl_easy_setopt(curl.get(), CURLOPT_HTTPHEADER, list);
    curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, append);
    curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, &answer.body);
    if (body != nullptr) {
        curl_easy_setopt(curl.get(), CURLOPT_POSTFIELDS, body->c_str());
    }
    const CURLcode code = curl_easy_perform(curl.get());
    curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &answer.status);
    curl_slist_free_all(list);
    if (code != CURLE_OK) {
        throw std::runtime_error(url + ": " + curl_easy_strerror(code));
    }
    return answer;
}

} // namespace vesk::test
