#include "component.h"

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "common/ownmodule.h"
#include "common/text.h"

namespace vesk::fernosim {

using simulator::Settings;

namespace {

/// A text as a careless component passes it: in memory of just its size, without a NUL.
struct Unterminated {
    explicit Unterminated(const std::string& text)
        : isNull(Settings().number("null_texts", 0) == 1), length(isNull ? 0 : text.size()),
          bytes(new char[length]) {
        std::memcpy(bytes.get(), text.data(), length);
        length = static_cast<size_t>(Settings().number("length", static_cast<int64_t>(length)));
    }
    const char* get() const { return isNull ? nullptr : bytes.get(); }

    bool isNull;
    size_t length;
    std::unique_ptr<char[]> bytes;
};

template <typename Callback>
void sendLogin(Callback callback, uint32_t type, int32_t code) {
    const bool success = type == 0;
    const Settings settings;
    const Unterminated ctt(success ? settings.text("ctt", "ctt-1") : "");
    const Unterminated openid(success ? settings.text("openid", "fr-openid-1") : "");
    const Unterminated key(success ? settings.text("sessionkey", "session-1") : "");
    const auto timeout = static_cast<uint32_t>(settings.number("ctt_timeout", 300));
    callback(type, code, ctt.get(), ctt.length, openid.get(), openid.length, key.get(), key.length,
             timeout, 0);
}

scanclient::PlayerScript player() {
    return {"Ferno",
            "0:qr:",
            "0:qr_fail:1:1",
            "0:fail:1:1",
            {{"scanned", "0:scanned"},
             {"confirm", "0:success"},
             {"deny", "0:fail:10009:0"},
             {"expire", "0:fail:10010:0"},
             {"kickout", "0:kickout:1"},
             {"fail", "0:fail:1:*"}}};
}

} // namespace

std::shared_ptr<Component> Component::start(const CallbackTable& host) {
    const bool keepsPointer = Settings().number("keep_pointer", 0) == 1;
    auto component = std::make_shared<Component>(host, keepsPointer);
    component->mThread = std::thread([component] { component->run(); });
    return component;
}

void Component::stop() {
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mEnded = true;
    }
    mChanged.notify_all();
    leaveScanPage();
    if (mThread.get_id() == std::this_thread::get_id()) {
        mThread.detach();
    } else {
        mThread.join();
    }
}

void Component::play(const std::string& steps) {
    const std::lock_guard<std::mutex> lock(mMutex);
    for (const std::string& step : devkit::split(steps, ',')) {
        mSteps.push_back(step);
    }
    mChanged.notify_all();
}

void Component::playInteractively(const std::string& controlUrl, const std::string& preCode) {
    const std::lock_guard<std::mutex> desk(mDeskMutex);
    mDesk.reset();
    const std::lock_guard<std::mutex> lock(mMutex);
    if (!mEnded) {
        mDesk = std::make_unique<simulator::PlayerDesk>(
            controlUrl, preCode, player(), [this](const std::string& steps) { play(steps); });
    }
}

void Component::leaveScanPage() {
    const std::lock_guard<std::mutex> desk(mDeskMutex);
    mDesk.reset();
}

void Component::leaveBehind(const char* key) const {
    const Settings settings;
    const std::string steps = settings.text(key, "");
    if (steps.empty()) {
        return;
    }
    if (settings.number("late_pinned", 1) == 1) {
        devkit::stayLoaded();
    }
    const auto late = std::make_shared<Component>(mTable, &mTable != &mCopy);
    late->play(steps);
    std::thread([late] { late->run(); }).detach();
}

void Component::run() {
    std::unique_lock<std::mutex> lock(mMutex);
    while (true) {
        mChanged.wait(lock, [this] { return mEnded || !mSteps.empty(); });
        if (mEnded) {
            return;
        }
        const std::string step = mSteps.front();
        mSteps.pop_front();
        const auto delay = std::chrono::milliseconds(std::atoi(step.c_str()));
        if (mChanged.wait_for(lock, delay, [this] { return mEnded; })) {
            return;
        }
        lock.unlock();
        sendOnThreads(step.substr(step.find(':') + 1));
        lock.lock();
    }
}

void Component::sendOnThreads(const std::string& event) const {
    std::vector<std::thread> others;
    for (int64_t i = Settings().number("threads", 1); i > 1; --i) {
        others.emplace_back([&] { send(event); });
    }
    send(event);
    for (std::thread& other : others) {
        other.join();
    }
}

void Component::send(const std::string& event) const {
    const std::vector<std::string> parts = devkit::split(event, ':');
    const auto argument = [&parts](size_t at) {
        return at < parts.size() ? std::atoi(parts[at].c_str()) : 0;
    };
    const uint32_t type = static_cast<uint32_t>(argument(1));
    const std::string& name = parts.at(0);
    if (name == "qr") {
        const Unterminated url(event.substr(3));
        mTable.qrcode(0, 0, url.get(), url.length, 120, 0);
    } else if (name == "qr_fail") {
        mTable.qrcode(type, argument(2), nullptr, 0, 0, 0);
    } else if (name == "scanned") {
        sendLogin(mTable.login, 10008, 0);
    } else if (name == "success" || name == "fail") {
        sendLogin(mTable.login, type, argument(2));
    } else if (name == "token" || name == "token_fail") {
        sendLogin(mTable.token, type, argument(2));
    } else if (name == "kickout") {
        mTable.kickOut(argument(1));
    } else if (name == "exception") {
        mTable.stateException();
    }
    Settings().stay("linger_ms");
    simulator::writeDown(devkit::JsonLine().add("callback", name));
}

} // namespace vesk::fernosim
