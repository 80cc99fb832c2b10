#include "component.h"

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <vector>

#include "own_path.h"

namespace vesk::fernosim {

namespace {

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

/// A text as a careless component passes it: in memory of just its size, without a NUL.
struct Unterminated {
    explicit Unterminated(const std::string& text)
        : isNull(Component::setting("null_texts", "0") == "1"), length(isNull ? 0 : text.size()),
          bytes(new char[length]) {
        std::memcpy(bytes.get(), text.data(), length);
        length = std::stoull(Component::setting("length", std::to_string(length)));
    }
    const char* get() const { return isNull ? nullptr : bytes.get(); }

    bool isNull;
    size_t length;
    std::unique_ptr<char[]> bytes;
};

template <typename Callback>
void sendLogin(Callback callback, uint32_t type, int32_t code) {
    const bool success = type == 0;
    const Unterminated ctt(success ? Component::setting("ctt", "ctt-1") : "");
    const Unterminated openid(success ? Component::setting("openid", "fr-openid-1") : "");
    const Unterminated key(success ? Component::setting("sessionkey", "session-1") : "");
    const uint32_t timeout =
        static_cast<uint32_t>(std::stoul(Component::setting("ctt_timeout", "300")));
    callback(type, code, ctt.get(), ctt.length, openid.get(), openid.length, key.get(), key.length,
             timeout, 0);
}

} // namespace

Component::Component(const CallbackTable& table)
    : mState(std::make_shared<State>(table, setting("keep_pointer", "0") == "1")) {
    mThread = std::thread([state = mState] { run(state); });
}

void Component::stop() {
    {
        const std::lock_guard<std::mutex> lock(mState->mutex);
        mState->ended = true;
    }
    mState->changed.notify_all();
    leaveConsole();
    if (mThread.get_id() == std::this_thread::get_id()) {
        mThread.detach();
    } else {
        mThread.join();
    }
}

void Component::play(const char* key, const char* otherwise) {
    queue(*mState, setting(key, otherwise));
}

void Component::playInteractively(const std::string& controlUrl, const std::string& preCode) {
    const std::lock_guard<std::mutex> desk(mDeskMutex);
    mDesk.reset();
    const std::lock_guard<std::mutex> lock(mState->mutex);
    if (!mState->ended) {
        mDesk = std::make_unique<PlayerDesk>(
            controlUrl, preCode,
            [state = mState](const std::string& steps) { queue(*state, steps); });
    }
}

void Component::leaveConsole() {
    const std::lock_guard<std::mutex> desk(mDeskMutex);
    mDesk.reset();
}

void Component::leaveBehind(const char* key) const {
    const std::string steps = setting(key, "");
    if (steps.empty()) {
        return;
    }
    if (setting("late_pinned", "1") == "1") {
        steamsim::stayLoaded();
    }
    const auto late = std::make_shared<State>(mState->table, mState->keepsPointer());
    queue(*late, steps);
    std::thread([late] { run(late); }).detach();
}

void Component::queue(State& state, const std::string& steps) {
    const std::lock_guard<std::mutex> lock(state.mutex);
    for (const std::string& step : split(steps, ',')) {
        state.steps.push_back(step);
    }
    state.changed.notify_all();
}

void Component::run(const std::shared_ptr<State>& state) {
    std::unique_lock<std::mutex> lock(state->mutex);
    while (true) {
        state->changed.wait(lock, [&] { return state->ended || !state->steps.empty(); });
        if (state->ended) {
            return;
        }
        const std::string step = state->steps.front();
        state->steps.pop_front();
        const size_t colon = step.find(':');
        const auto delay = std::chrono::milliseconds(std::atoi(step.c_str()));
        if (state->changed.wait_for(lock, delay, [&] { return state->ended; })) {
            return;
        }
        lock.unlock();
        sendOnThreads(state->table, step.substr(colon + 1));
        lock.lock();
    }
}

void Component::sendOnThreads(const CallbackTable& table, const std::string& event) {
    std::vector<std::thread> others;
    for (int i = std::atoi(setting("threads", "1").c_str()); i > 1; --i) {
        others.emplace_back([&] { send(table, event); });
    }
    send(table, event);
    for (std::thread& other : others) {
        other.join();
    }
}

void Component::send(const CallbackTable& table, const std::string& event) {
    const std::vector<std::string> parts = split(event, ':');
    const auto argument = [&parts](size_t at) {
        return at < parts.size() ? std::atoi(parts[at].c_str()) : 0;
    };
    const uint32_t type = static_cast<uint32_t>(argument(1));
    const std::string& name = parts.at(0);
    if (name == "qr") {
        const Unterminated url(event.substr(3));
        table.qrcode(0, 0, url.get(), url.length, 120, 0);
    } else if (name == "qr_fail") {
        table.qrcode(type, argument(2), nullptr, 0, 0, 0);
    } else if (name == "scanned") {
        sendLogin(table.login, 10008, 0);
    } else if (name == "success" || name == "fail") {
        sendLogin(table.login, type, argument(2));
    } else if (name == "token" || name == "token_fail") {
        sendLogin(table.token, type, argument(2));
    } else if (name == "kickout") {
        table.kickOut(argument(1));
    } else if (name == "exception") {
        table.stateException();
    }
    sleep("linger_ms");
    writeDown("{\"callback\":\"" + name + "\"}");
}

void Component::sleep(const char* key) {
    std::this_thread::sleep_for(std::chrono::milliseconds(std::stoi(setting(key, "0"))));
}

std::string Component::setting(const std::string& key, const std::string& otherwise) {
    std::ifstream file(steamsim::ownFolder() / "ferno_sim.ini");
    for (std::string line; std::getline(file, line);) {
        if (line.compare(0, key.size() + 1, key + "=") == 0) {
            return line.substr(key.size() + 1, line.find_last_not_of('\r') - key.size());
        }
    }
    return otherwise;
}

void Component::writeDown(const std::string& line) {
    static std::mutex mutex;
    const std::lock_guard<std::mutex> lock(mutex);
    std::ofstream(steamsim::ownFolder() / "ferno_sim_calls.txt", std::ios::app | std::ios::binary)
        << line << '\n';
}

} // namespace vesk::fernosim
