#include <cstdlib>
#include <mutex>
#include <new>
#include <utility>

#include "ferno_sim_export.h"
#include "frlogin.h"

namespace vesk::fernosim {

namespace {

std::mutex gMutex; // guards what Current() refers to

std::shared_ptr<Component>& Current() {
    // Never destroyed: the process may end while the component is up. In a place of its own, so
    // that the library leaves nothing behind when it is unloaded.
    alignas(std::shared_ptr<Component>) static char place[sizeof(std::shared_ptr<Component>)];
    static auto& component = *new (place) std::shared_ptr<Component>;
    return component;
}

} // namespace

std::shared_ptr<Component> theComponent() {
    const std::lock_guard<std::mutex> lock(gMutex);
    return Current();
}

std::shared_ptr<Component> replaceComponent(std::shared_ptr<Component> next) {
    const std::lock_guard<std::mutex> lock(gMutex);
    return std::exchange(Current(), std::move(next));
}

} // namespace vesk::fernosim

using vesk::fernosim::Component;

extern "C" FERNO_SIM_EXPORT int frlogin_init(void* table, const char* logDirectory) {
    Component::writeDown(std::string("{\"call\":\"frlogin_init\",\"log\":\"") +
                         (logDirectory == nullptr || *logDirectory == '\0' ? "" : "set") + "\"}");
    const auto component =
        std::make_shared<Component>(*static_cast<vesk::fernosim::CallbackTable*>(table));
    if (const auto before = vesk::fernosim::replaceComponent(component)) {
        before->stop();
    }
    component->play("on_init", "");
    Component::sleep("init_ms");
    return std::atoi(Component::setting("init", "0").c_str());
}
