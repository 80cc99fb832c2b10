#include "ferno_sim_export.h"
#include "frlogin.h"

using vesk::fernosim::Component;

extern "C" FERNO_SIM_EXPORT int frlogin_uninit() {
    Component::writeDown(R"({"call":"frlogin_uninit"})");
    Component::sleep("uninit_ms");
    if (const auto component = vesk::fernosim::replaceComponent(nullptr)) {
        component->leaveBehind("on_late");
        component->stop();
    }
    return 0;
}
