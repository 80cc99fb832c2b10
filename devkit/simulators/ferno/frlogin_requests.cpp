#include <cstdlib>

#include "ferno_sim_export.h"
#include "frlogin.h"

using vesk::fernosim::Component;
using vesk::fernosim::theComponent;

namespace {

int request(const char* resultKey, const char* stepsKey, const char* steps) {
    const int result = std::atoi(Component::setting(resultKey, "0").c_str());
    const auto component = theComponent();
    if (result == 0 && stepsKey != nullptr && component) {
        component->play(stepsKey, steps);
    }
    return result;
}

} // namespace

extern "C" FERNO_SIM_EXPORT int frlogin_req_qrcode(const char* appId, size_t appIdLength,
                                                   const char* preCode, size_t preCodeLength,
                                                   const char* scope, size_t scopeLength) {
    Component::writeDown(R"({"call":"frlogin_req_qrcode","app_id":")" +
                         std::string(appId, appIdLength) + R"(","pre_code":")" +
                         std::string(preCode, preCodeLength) + R"(","scope":")" +
                         std::string(scope, scopeLength) + "\"}");
    Component::sleep("call_ms");
    const std::string console = Component::setting("interactive", "");
    if (!console.empty()) {
        const int result = request("req_qrcode", nullptr, nullptr);
        const auto component = theComponent();
        if (result == 0 && component) {
            component->playInteractively(console, std::string(preCode, preCodeLength));
        }
        return result;
    }
    return request("req_qrcode", "on_qrcode",
                   "20:qr:https://ferno.example/qr/1,50:scanned,50:success");
}

extern "C" FERNO_SIM_EXPORT int frlogin_req_client_tmp_token() {
    Component::writeDown(R"({"call":"frlogin_req_client_tmp_token"})");
    Component::sleep("call_ms");
    return request("req_token", "on_token", "20:token");
}

extern "C" FERNO_SIM_EXPORT int frlogin_req_logout() {
    Component::writeDown(R"({"call":"frlogin_req_logout"})");
    Component::sleep("call_ms");
    if (const auto component = theComponent()) {
        component->leaveConsole();
    }
    return request("req_logout", nullptr, nullptr);
}
