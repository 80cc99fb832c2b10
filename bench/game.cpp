#include "game.h"

#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <thread>
#include <unistd.h>
#include <utility>

#include "figures.h"
#include "foundation/tools/vesknetworkutils.h"
#include "login/veskloginbodies.h"
#include "support/backendcontrol.h"
#include "support/files.h"

using namespace Braxel::VESK;

namespace fs = std::filesystem;

namespace vesk::bench {

namespace {

constexpr auto kPatience = std::chrono::seconds(20);
constexpr auto kPoll = std::chrono::microseconds(100);

size_t entries(const char* folder) {
    return static_cast<size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

} // namespace

Game::Game() : mFolder(test::environment("VESK_TEST_FOLDER")) {
    VESKLogin::SetLoginObserver(this);
}

Game::LoginTimes Game::login(const char* channel) {
    const double start = nowNs();
    const double returned = startLogin(channel);
    return {waitForResult() - start, returned - start};
}

double Game::startLogin(const char* channel) {
    VESKLogin::Login(channel, "", "", "");
    return nowNs();
}

double Game::waitForResult() {
    std::unique_lock<std::mutex> lock(mMutex);
    if (!mArrived.wait_for(lock, kPatience, [this] { return mArrivedAt > 0; })) {
        throw std::runtime_error("no login result came");
    }
    if (mRetCode != VESKError::SUCCESS) {
        throw std::runtime_error("the login failed: " + std::to_string(mRetCode));
    }
    return std::exchange(mArrivedAt, 0);
}

void Game::logout(const char* channel) {
    VESKLogin::Logout(channel, "", false);
    waitForThreads(1);
}

std::vector<PlainRequest> Game::requestsOf(const std::string& channel) const {
    const std::string ca = (mFolder / "cacert.pem").string();
    const auto request = [&](const char* path, int32_t channelID, const std::string& body) {
        return PlainRequest{VESKNetworkUtils::GetURL(path, channelID, body, "bench"), body, ca};
    };
    if (channel == "Steam") {
        const std::string ticket(480, 'A');
        return {request("auth/login", 21,
                        VESKLoginBodies::Login(R"({"steamid":"76561198000000001","ticket":")" +
                                               ticket + R"("})"))};
    }
    return {request("auth/pcprecode", 1, VESKLoginBodies::PreCode(channel, "")),
            request("auth/login", 1,
                    VESKLoginBodies::Login(R"({"openid":"fr-openid-1","ctt":"ctt-1"})"))};
}

void Game::clearBackend() {
    const std::string body = "{}";
    test::callControlPort(test::environment("VESK_TEST_CONTROL_URL") + "/clear", &body);
}

void Game::OnLoginRetNotify(const VESKLoginRet& ret) {
    const double now = nowNs();
    const std::lock_guard<std::mutex> lock(mMutex);
    mArrivedAt = now;
    mRetCode = ret.retCode;
    mArrived.notify_all();
}

void Game::OnBaseRetNotify(const VESKBaseRet& /*ret*/) {}

void Game::OnQrCodeRetNotify(const VESKQrCodeRet& /*ret*/) {}

void waitForThreads(size_t count) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (threadCount() > count) {
        if (std::chrono::steady_clock::now() > end) {
            throw std::runtime_error("a thread does not end");
        }
        std::this_thread::sleep_for(kPoll);
    }
}

size_t threadCount() {
    return entries("/proc/self/task");
}

size_t descriptorCount() {
    return entries("/proc/self/fd");
}

double residentBytes() {
    long pages = 0;
    long resident = 0;
    std::FILE* file = std::fopen("/proc/self/statm", "r");
    const bool good = file != nullptr && std::fscanf(file, "%ld %ld", &pages, &resident) == 2;
    if (file != nullptr) {
        std::fclose(file);
    }
    if (!good) {
        throw std::runtime_error("the resident memory is not known");
    }
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

double timePlainly(const std::vector<PlainRequest>& requests) {
    std::mutex mutex;
    std::condition_variable changed;
    double end = 0;
    const double start = nowNs();
    std::function<void(size_t)> run = [&](size_t at) {
        requests[at].post();
        if (at + 1 < requests.size()) {
            onNewThread([&run, at] { run(at + 1); });
            return;
        }
        const double now = nowNs();
        const std::lock_guard<std::mutex> lock(mutex);
        end = now;
        changed.notify_all();
    };
    onNewThread([&run] { run(0); });
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait(lock, [&] { return end > 0; });
    lock.unlock();
    waitForThreads(1);
    return end - start;
}

} // namespace vesk::bench
