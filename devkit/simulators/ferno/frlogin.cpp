#include <mutex>
#include <new>
#include <utility>

#include "component.h"

const char* const vesk::simulator::kName = "ferno";

using vesk::devkit::JsonLine;
using vesk::fernosim::Component;
using vesk::simulator::Settings;
using vesk::simulator::writeDown;

namespace {

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
    const auto component = Component::start(*static_cast<vesk::fernosim::CallbackTable*>(table));
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
