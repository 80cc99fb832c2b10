#include "client/playersession.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <curl/curl.h>

#include "common/jsonline.h"

namespace vesk::scanclient {

namespace {

constexpr long kPatienceMs = 2000;
constexpr const char* kWaitMs = "2000";
constexpr long kWaitPatienceMs = 4000;
constexpr long kEndPatienceMs = 200;
constexpr int kPollMs = 1000;

/// The port of "http://127.0.0.1:<port>"; 0 when it is no such address.
int portOf(std::string url) {
    std::transform(url.begin(), url.end(), url.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const std::string scheme = "http://";
    const std::string host = url.substr(url.find(scheme) == 0 ? scheme.size() : 0);
    // The name is not looked up: whatever else it says, it is not this machine.
    for (const char* name : {"127.0.0.1:", "localhost:"}) {
        if (host.find(name) == 0) {
            return std::atoi(host.c_str() + std::string(name).size());
        }
    }
    return 0;
}

size_t append(char* data, size_t size, size_t count, void* body) {
    static_cast<std::string*>(body)->append(data, size * count);
    return size * count;
}

std::string stepOf(const PlayerScript& script, const std::string& button, const std::string& code) {
    const auto found = script.steps.find(button);
    std::string step = found == script.steps.end() ? std::string() : found->second;
    const size_t star = step.find('*');
    return star == std::string::npos ? step : step.replace(star, 1, code);
}

} // namespace

PlayerSession::PlayerSession(const std::string& controlUrl)
    : mAddress("http://127.0.0.1:" + std::to_string(portOf(controlUrl))) {
    curl_global_init(CURL_GLOBAL_ALL); // counts
    mTransfers = curl_multi_init();
}

PlayerSession::~PlayerSession() {
    curl_multi_cleanup(mTransfers);
    curl_global_cleanup();
}

void PlayerSession::serve(const PlayerScript& script, const std::string& preCode,
                          const Play& play) {
    const std::string registration =
        devkit::JsonLine().add("channel", script.channel).add("precode", preCode).text();
    Members session = ask("/sessions", registration.c_str(), kPatienceMs);
    if (session["id"].empty()) {
        play(script.noBackend);
        return;
    }
    play(script.showCode + session["picture"]);
    const std::string path = "/sessions/" + session["id"];
    // A confirmed player can still be kicked out, so only a failure counts before that.
    bool isDecided = false;
    bool isOver = false;
    unsigned words = 0;
    while (!isOver) {
        Members word = ask(path + "/word?wait_ms=" + kWaitMs + "&index=" + std::to_string(words),
                           nullptr, kWaitPatienceMs);
        const std::string button = word["button"];
        const std::string step = stepOf(script, button, word["code"]);
        if (!step.empty()) {
            isDecided = isDecided || button != "scanned";
            play(step);
        }
        words += button.empty() ? 0U : 1U;
        isOver = word["over"] != "false";
    }
    if (!isDecided && !mStopped) {
        play(script.backendGone);
    }
    transfer(path + "/end", "{}", kEndPatienceMs, false);
}

void PlayerSession::stop() {
    mStopped = true;
    curl_multi_wakeup(mTransfers);
}

PlayerSession::Members PlayerSession::ask(const std::string& path, const char* json,
                                          long patienceMs) {
    return mStopped ? Members() : transfer(path, json, patienceMs, true);
}

PlayerSession::Members PlayerSession::transfer(const std::string& path, const char* json,
                                               long patienceMs, bool canBeStopped) {
    CURL* const request = curl_easy_init();
    curl_slist* const headers = curl_slist_append(nullptr, "Content-Type: application/json");
    std::string body;
    curl_easy_setopt(request, CURLOPT_URL, (mAddress + path).c_str());
    curl_easy_setopt(request, CURLOPT_PROXY, "");
    curl_easy_setopt(request, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(request, CURLOPT_TIMEOUT_MS, patienceMs);
    curl_easy_setopt(request, CURLOPT_WRITEFUNCTION, &append);
    curl_easy_setopt(request, CURLOPT_WRITEDATA, &body);
    if (json != nullptr) {
        curl_easy_setopt(request, CURLOPT_HTTPHEADER, headers);
        curl_easy_setopt(request, CURLOPT_POSTFIELDS, json);
    }
    curl_multi_add_handle(mTransfers, request);
    int running = 0;
    while (curl_multi_perform(mTransfers, &running) == CURLM_OK && running > 0 &&
           !(canBeStopped && mStopped)) {
        curl_multi_poll(mTransfers, nullptr, 0, kPollMs, nullptr);
    }
    int left = 0;
    const CURLMsg* const end = curl_multi_info_read(mTransfers, &left);
    long status = 0;
    if (end != nullptr && end->data.result == CURLE_OK) {
        curl_easy_getinfo(request, CURLINFO_RESPONSE_CODE, &status);
    }
    curl_multi_remove_handle(mTransfers, request);
    curl_easy_cleanup(request);
    curl_slist_free_all(headers);
    const auto members = devkit::readJsonObject(status == 200 ? body : "");
    return members.value_or(Members());
}

} // namespace vesk::scanclient
