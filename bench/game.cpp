#include "game.h"

#include <chrono>
#include <stdexcept>
#include <thread>
#include <utility>

#include "figures.h"
#include "foundation/tools/vesknetworkutils.h"
#include "login/veskloginbodies.h"
#include "module/veskmodule.h"
#include "support/backendcontrol.h"
#include "support/files.h"
#include "support/system.h"

using namespace Braxel::VESK;

namespace vesk::bench {

namespace {

constexpr auto kPatience = std::chrono::seconds(20);
constexpr auto kPoll = std::chrono::microseconds(100);

} // namespace

Game::Game() : mFolder(test::environment("VESK_TEST_FOLDER")) {
    VESKModule::UsePath((mFolder / test::kSdkLibrary).make_preferred().string());
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
    while (test::countProcess().threads > count + test::kSystemThreads) {
        if (std::chrono::steady_clock::now() > end) {
            throw std::runtime_error("a thread does not end");
        }
        std::this_thread::sleep_for(kPoll);
    }
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
