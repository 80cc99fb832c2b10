#include "playerdesk.h"

#include <cstdio>
#include <curl/curl.h>
#include <utility>

namespace vesk::simulator {

namespace {

constexpr long kPatienceMs = 2000;
constexpr const char* kWaitMs = "2000";
constexpr long kWaitPatienceMs = 4000;
constexpr long kEndPatienceMs = 200;
constexpr int kPollMs = 1000;

/// The port of "http://127.0.0.1:<port>"; 0 when it is no such address.
int portOf(const std::string& url) {
    int port = 0;
    // The name is not looked up: whatever else it says, it is not this machine.
    for (const char* form : {"http://127.0.0.1:%d", "http://localhost:%d"}) {
        std::sscanf(url.c_str(), form, &port); // NOLINT(cert-err34-c): 0 is no port
    }
    return port;
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

std::shared_ptr<void> openTransfers() {
    curl_global_init(CURL_GLOBAL_ALL); // counts
    return {curl_multi_init(), [](void* transfers) {
                curl_multi_cleanup(transfers);
                curl_global_cleanup();
            }};
}

} // namespace

PlayerDesk::PlayerDesk(const std::string& controlUrl, const std::string& preCode,
                       PlayerScript script, Play play)
    : mAddress("http://127.0.0.1:" + std::to_string(portOf(controlUrl))),
      mScript(std::move(script)), mPlay(std::move(play)), mTransfers(openTransfers()),
      mThread([this, preCode] { serve(preCode); }) {}

PlayerDesk::~PlayerDesk() {
    mCloses = true;
    curl_multi_wakeup(mTransfers.get());
    mThread.join();
}

void PlayerDesk::serve(const std::string& preCode) {
    const std::string registration =
        devkit::JsonLine().add("channel", mScript.channel).add("precode", preCode).text();
    auto session = ask("/sessions", registration.c_str(), kPatienceMs);
    if (session["id"].empty()) {
        mPlay(mScript.noBackend);
        return;
    }
    mPlay(mScript.showCode + session["picture"]);
    const std::string path = "/sessions/" + session["id"];
    // A confirmed player can still be kicked out, so only a failure counts before that.
    bool isDecided = false;
    bool isOver = false;
    unsigned words = 0;
    while (!isOver) {
        auto word = ask(path + "/word?wait_ms=" + kWaitMs + "&index=" + std::to_string(words),
                        nullptr, kWaitPatienceMs);
        const std::string button = word["button"];
        const std::string step = stepOf(mScript, button, word["code"]);
        if (!step.empty()) {
            isDecided = isDecided || button != "scanned";
            mPlay(step);
        }
        words += button.empty() ? 0U : 1U;
        isOver = word["over"] != "false";
    }
    if (!isDecided && !mCloses) {
        mPlay(mScript.backendGone);
    }
    ask(path + "/end", "{}", kEndPatienceMs, true);
}

devkit::JsonMembers PlayerDesk::ask(const std::string& path, const char* json, long patienceMs,
                                    bool isFarewell) {
    const auto isInterrupted = [&] { return mCloses && !isFarewell; };
    if (isInterrupted()) {
        return {};
    }
    CURL* const request = curl_easy_init();
    curl_slist* const headers = curl_slist_append(nullptr, "Content-Type: application/json");
    std::string body;
    curl_easy_setopt(request, CURLOPT_URL, (mAddress + path).c_str());
    curl_easy_setopt(request, CURLOPT_PROXY, "");
    curl_easy_setopt(request, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(request, CURLOPT_FAILONERROR, 1L);
    curl_easy_setopt(request, CURLOPT_TIMEOUT_MS, patienceMs);
    curl_easy_setopt(request, CURLOPT_WRITEFUNCTION, &append);
    curl_easy_setopt(request, CURLOPT_WRITEDATA, &body);
    if (json != nullptr) {
        curl_easy_setopt(request, CURLOPT_HTTPHEADER, headers);
        curl_easy_setopt(request, CURLOPT_POSTFIELDS, json);
    }
    curl_multi_add_handle(mTransfers.get(), request);
    int running = 0;
    while (curl_multi_perform(mTransfers.get(), &running) == CURLM_OK && running > 0 &&
           !isInterrupted()) {
        curl_multi_poll(mTransfers.get(), nullptr, 0, kPollMs, nullptr);
    }
    int left = 0;
    const CURLMsg* const end = curl_multi_info_read(mTransfers.get(), &left);
    const bool isGood = end != nullptr && end->data.result == CURLE_OK;
    curl_multi_remove_handle(mTransfers.get(), request);
    curl_easy_cleanup(request);
    curl_slist_free_all(headers);
    return devkit::readJsonObject(isGood ? body : "").value_or(devkit::JsonMembers());
}

} // namespace vesk::simulator
