#include <cstdlib>
#include <new>

#include "ferno_sim_export.h"
#include "frlogin.h"

namespace vesk::fernosim {

std::unique_ptr<Component>& theComponent() {
    // Never destroyed: the process may end while the component is up. In a place of its own, so
    // that the library leaves nothing behind when it is unloaded.
    alignas(std::unique_ptr<Component>) static char place[sizeof(std::unique_ptr<Component>)];
    static auto& component = *new (place) std::unique_ptr<Component>;
    return component;
}

} // namespace vesk::fernosim

using vesk::fernosim::Component;

extern "C" FERNO_SIM_EXPORT int frlogin_init(void* table, const char* logDirectory) {
    Component::writeDown(std::string("{\"call\":\"frlogin_init\",\"log\":\"") +
                         (logDirectory == nullptr || *logDirectory == '\0' ? "" : "set") + "\"}");
    vesk::fernosim::theComponent() =
        std::make_unique<Component>(*static_cast<vesk::fernosim::CallbackTable*>(table));
    return std::atoi(Component::setting("init", "0").c_str());
}
