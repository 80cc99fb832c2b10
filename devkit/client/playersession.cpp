#include "client/playersession.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <csignal>
#include <cstdlib>

#include "common/jsonline.h"
#include "httplib.h"

namespace vesk::scanclient {

namespace {

constexpr int kPatienceMs = 2000;
// Windows does not wake a read whose socket is shut down here, so stop() may have to wait this out.
constexpr const char* kWaitMs = "250";
constexpr int kWaitPatienceMs = 2250;
constexpr int kEndPatienceMs = 200;
constexpr auto kStopInterval = std::chrono::milliseconds(10);

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

/// The game's process must not get a signal because the backend has gone.
void hearNoBrokenPipes() {
#ifdef SIGPIPE
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
#endif
}

std::string stepOf(const PlayerScript& script, const PlayerWord& word) {
    const auto found = script.steps.find(word.button);
    std::string step = found == script.steps.end() ? std::string() : found->second;
    const size_t star = step.find('*');
    return star == std::string::npos ? step : step.replace(star, 1, std::to_string(word.code));
}

/// The members of an answer; none when it is missing.
devkit::JsonMembers membersOf(const std::optional<std::string>& answer) {
    return devkit::readJsonObject(answer.value_or("")).value_or(devkit::JsonMembers());
}

} // namespace

PlayerSession::PlayerSession(const std::string& controlUrl)
    : mClient(std::make_unique<httplib::Client>("127.0.0.1", portOf(controlUrl))) {}

PlayerSession::~PlayerSession() = default;

void PlayerSession::serve(const PlayerScript& script, const std::string& preCode,
                          const Play& play) {
    hearNoBrokenPipes();
    const auto qrCode = begin(script.channel, preCode);
    if (!qrCode) {
        play(script.noBackend);
        return;
    }
    play(script.showCode + *qrCode);
    // A confirmed player can still be kicked out, so only a failure counts before that.
    bool isDecided = false;
    auto word = next();
    while (word) {
        const std::string step = stepOf(script, *word);
        if (!step.empty()) {
            isDecided = isDecided || word->button != "scanned";
            play(step);
        }
        if (word->over) {
            break;
        }
        word = next();
    }
    const bool isStopped = [this] {
        const std::lock_guard<std::mutex> lock(mMutex);
        return mStopped;
    }();
    if (!isDecided && !isStopped) {
        play(script.backendGone);
    }
    ask("/sessions/" + mId + "/end", "{}", kEndPatienceMs);
}

void PlayerSession::stop() {
    std::unique_lock<std::mutex> lock(mMutex);
    mStopped = true;
    // Again and again: a request may be about to connect, where there is nothing to end yet.
    while (mAsking) {
        mClient->stop();
        mAnswered.wait_for(lock, kStopInterval, [this] { return !mAsking; });
    }
}

PlayerSession::Body PlayerSession::ask(const std::string& path, const char* json, int patienceMs) {
    const std::chrono::milliseconds patience(patienceMs);
    mClient->set_connection_timeout(patience);
    mClient->set_read_timeout(patience);
    const httplib::Result answer =
        json == nullptr ? mClient->Get(path) : mClient->Post(path, json, "application/json");
    return answer && answer->status == 200 ? Body(answer->body) : std::nullopt;
}

PlayerSession::Body PlayerSession::askUnlessStopped(const std::string& path, const char* json,
                                                    int patienceMs) {
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        if (mStopped) {
            return std::nullopt;
        }
        mAsking = true;
    }
    Body answer = ask(path, json, patienceMs);
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mAsking = false;
    }
    mAnswered.notify_all();
    return answer;
}

std::optional<std::string> PlayerSession::begin(const std::string& channel,
                                                const std::string& preCode) {
    const std::string registration =
        devkit::JsonLine().add("channel", channel).add("precode", preCode).text();
    const auto session =
        membersOf(askUnlessStopped("/sessions", registration.c_str(), kPatienceMs));
    const auto id = session.find("id");
    const auto qrCode = session.find("qrcode");
    if (id == session.end() || qrCode == session.end()) {
        return std::nullopt;
    }
    mId = id->second;
    return qrCode->second;
}

std::optional<PlayerWord> PlayerSession::next() {
    auto answer = membersOf(askUnlessStopped(
        "/sessions/" + mId + "/word?index=" + std::to_string(mWords) + "&wait_ms=" + kWaitMs,
        nullptr, kWaitPatienceMs));
    if (answer.count("button") == 0) {
        return std::nullopt;
    }
    PlayerWord word;
    word.button = answer["button"];
    word.code = std::atoi(answer["code"].c_str());
    word.over = answer["over"] == "true";
    mWords += word.button.empty() ? 0U : 1U;
    return word;
}

} // namespace vesk::scanclient
