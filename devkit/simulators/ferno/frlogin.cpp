#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "common/system.h"
#include "common/text.h"
#include "playerdesk.h"
#include "simulator.h"

const char* const vesk::simulator::kName = "ferno";

using namespace vesk;
using devkit::JsonLine;
using simulator::Settings;
using simulator::writeDown;

namespace {

/// Lengths go out as 64 bits: hosts must cope with either width.
using LoginCallback = void (*)(uint32_t type, int32_t code, const char* ctt, size_t cttLength,
                               const char* openid, size_t openidLength, const char* key,
                               size_t keyLength, uint32_t cttTimeout, uint64_t expiryTick);

/// The table that frlogin_init takes.
struct CallbackTable {
    void* unused0;
    void (*qrcode)(uint32_t type, int32_t code, const char* url, size_t urlLength, uint64_t timeout,
                   uint64_t expiryTick);
    LoginCallback login;
    void* unused3;
    LoginCallback token;
    void* unused5;
    void* unused6;
    void (*kickOut)(int32_t code);
    void* unused8;
    void (*stateException)();
};

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

void sendLogin(LoginCallback callback, uint32_t type, int32_t code) {
    const bool success = type == 0;
    const Settings settings;
    const Unterminated ctt(success ? settings.text("ctt", "ctt-1") : "");
    const Unterminated openid(success ? settings.text("openid", "fr-openid-1") : "");
    const Unterminated key(success ? settings.text("sessionkey", "session-1") : "");
    const auto timeout = static_cast<uint32_t>(settings.number("ctt_timeout", 300));
    callback(type, code, ctt.get(), ctt.length, openid.get(), openid.length, key.get(), key.length,
             timeout, 0);
}

simulator::PlayerScript player() {
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

/// The simulated messenger: one thread calls the host back, step by step, as ferno_sim.ini says.
/// Each call either way is a line in ferno_sim_calls.txt, callbacks once they have returned. Calls
/// may come on any threads at once.
class Component {
public:
    Component(const CallbackTable& host, bool keepsPointer)
        : mCopy(host), mTable(keepsPointer ? host : mCopy) {}
    Component(const Component&) = delete;
    Component& operator=(const Component&) = delete;

    /// Starts the thread, which keeps the component. Copies @p host, unless ferno_sim.ini says that
    /// its address is kept.
    static std::shared_ptr<Component> start(const CallbackTable& host) {
        const bool keepsPointer = Settings().number("keep_pointer", 0) == 1;
        auto component = std::make_shared<Component>(host, keepsPointer);
        component->mThread = std::thread([component] { component->run(); });
        return component;
    }

    /// Ends the thread, once; from inside a callback it lets the callback end first.
    void stop() {
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

    /// Queues steps, "<delay ms>:<event>[:<argument>...],...".
    void play(const std::string& steps) {
        const std::lock_guard<std::mutex> lock(mMutex);
        for (const std::string& step : devkit::split(steps, ',')) {
            mSteps.push_back(step);
        }
        mChanged.notify_all();
    }

    /// Lets the player at the scan page decide about a code; he leaves one that came before.
    void playInteractively(const std::string& controlUrl, const std::string& preCode) {
        const std::lock_guard<std::mutex> desk(mDeskMutex);
        mDesk.reset();
        const std::lock_guard<std::mutex> lock(mMutex);
        if (!mEnded) {
            mDesk = std::make_unique<simulator::PlayerDesk>(
                controlUrl, preCode, player(), [this](const std::string& steps) { play(steps); });
        }
    }

    /// The player leaves the scan page.
    void leaveScanPage() {
        const std::lock_guard<std::mutex> desk(mDeskMutex);
        mDesk.reset();
    }

    /// Lets a thread play the setting @p key, if there is one, that the component does not end:
    /// it calls back whatever has become of the host. The library stays loaded for it.
    void leaveBehind(const char* key) const {
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

private:
    void run() {
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

    void sendOnThreads(const std::string& event) const {
        std::vector<std::thread> others;
        for (int64_t i = Settings().number("threads", 1); i > 1; --i) {
            others.emplace_back([&] { send(event); });
        }
        send(event);
        for (std::thread& other : others) {
            other.join();
        }
    }

    void send(const std::string& event) const {
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
        writeDown(JsonLine().add("callback", name));
    }

    const CallbackTable mCopy;
    const CallbackTable& mTable; ///< the host's own, or the copy
    std::thread mThread;
    std::mutex mMutex;
    std::condition_variable mChanged;
    std::deque<std::string> mSteps;
    bool mEnded = false;
    std::mutex mDeskMutex; // the desk's thread never takes it
    std::unique_ptr<simulator::PlayerDesk> mDesk;
};

std::mutex theMutex; // guards what current() refers to

std::shared_ptr<Component>& current() {
    // Never destroyed: the process may end while the component is up. In a place of its own, so
    // that the library leaves nothing behind when it is unloaded.
    alignas(std::shared_ptr<Component>) static char place[sizeof(std::shared_ptr<Component>)];
    static auto& component = *new (place) std::shared_ptr<Component>;
    return component;
}

/// The one component of the process; null outside frlogin_init and frlogin_uninit. Whoever has got
/// it keeps it.
std::shared_ptr<Component> theComponent() {
    const std::lock_guard<std::mutex> lock(theMutex);
    return current();
}

/// Makes @p next the component, which may be null. @return the one before it, for the caller alone.
std::shared_ptr<Component> replaceComponent(std::shared_ptr<Component> next) {
    const std::lock_guard<std::mutex> lock(theMutex);
    return std::exchange(current(), std::move(next));
}

void writeCall(const char* name) {
    writeDown(JsonLine().add("call", name));
}

/// Answers a request that has come; @p follow sees to what follows a good answer.
template <typename Follow>
int answer(const char* resultKey, Follow follow) {
    Settings().stay("call_ms");
    const int result = static_cast<int>(Settings().number(resultKey, 0));
    const auto component = theComponent();
    if (result == 0 && component) {
        follow(*component);
    }
    return result;
}

} // namespace

extern "C" {

int frlogin_init(void* table, const char* logDirectory) {
    const bool isSet = logDirectory != nullptr && *logDirectory != '\0';
    writeDown(JsonLine().add("call", "frlogin_init").add("log", isSet ? "set" : ""));
    const auto component = Component::start(*static_cast<CallbackTable*>(table));
    if (const auto before = replaceComponent(component)) {
        before->stop();
    }
    component->play(Settings().text("on_init", ""));
    Settings().stay("init_ms");
    return static_cast<int>(Settings().number("init", 0));
}

int frlogin_req_qrcode(const char* appId, size_t appIdLength, const char* preCode,
                       size_t preCodeLength, const char* scope, size_t scopeLength) {
    const std::string code(preCode, preCodeLength);
    writeDown(JsonLine()
                  .add("call", "frlogin_req_qrcode")
                  .add("app_id", std::string(appId, appIdLength))
                  .add("pre_code", code)
                  .add("scope", std::string(scope, scopeLength)));
    return answer("req_qrcode", [&](Component& component) {
        const std::string scanPage = Settings().text("interactive", "");
        if (!scanPage.empty()) {
            component.playInteractively(scanPage, code);
        } else {
            component.play(Settings().text(
                "on_qrcode", "20:qr:https://ferno.example/qr/1,50:scanned,50:success"));
        }
    });
}

int frlogin_req_client_tmp_token() {
    writeCall("frlogin_req_client_tmp_token");
    return answer("req_token", [](Component& component) {
        component.play(Settings().text("on_token", "20:token"));
    });
}

int frlogin_req_logout() {
    writeCall("frlogin_req_logout");
    Settings().stay("call_ms");
    if (const auto component = theComponent()) {
        component->leaveScanPage();
    }
    return static_cast<int>(Settings().number("req_logout", 0));
}

int frlogin_uninit() {
    writeCall("frlogin_uninit");
    Settings().stay("uninit_ms");
    if (const auto component = replaceComponent(nullptr)) {
        component->leaveBehind("on_late");
        component->stop();
    }
    return 0;
}

} // extern "C"
