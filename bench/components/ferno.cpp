// A Ferno component whose player has scanned and confirmed before the request for a code returns.
#include <cstring>

#include "platformimpl/login/veskferno/veskfrcomponent.h"
#include "vesk/veskexport.h"

using Braxel::VESK::FrCallbackTable;

namespace {

FrCallbackTable callbacks = {};

uint32_t length(const char* text) {
    return static_cast<uint32_t>(std::strlen(text));
}

} // namespace

extern "C" {

VESK_API int frlogin_init(void* table, const char* /*logDirectory*/) {
    callbacks = *static_cast<FrCallbackTable*>(table);
    return 0;
}

VESK_API int frlogin_uninit() {
    return 0;
}

VESK_API int frlogin_req_qrcode(const char* /*appID*/, size_t /*appIDLength*/,
                                const char* /*preCode*/, size_t /*preCodeLength*/,
                                const char* /*scope*/, size_t /*scopeLength*/) {
    const char* const url = "https://ferno.example/qr/1";
    const char* const token = "ctt-1";
    const char* const openid = "fr-openid-1";
    callbacks.qrcodeResp(0, 0, url, length(url), 300, 0);
    callbacks.loginResp(0, 0, token, length(token), openid, length(openid), token, length(token),
                        300, 0);
    return 0;
}

VESK_API int frlogin_req_client_tmp_token() {
    return 0;
}

VESK_API int frlogin_req_logout() {
    return 0;
}

} // extern "C"
