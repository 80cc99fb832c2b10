/* A login, a look at it and a logout in plain C, for every C compiler there is. */
#include "host.h"
#include "vesk/vesk_c.h"

static struct {
    vesk_base_ret ret; /* its texts are gone */
    char openid[64];
    void* user;
} heard;

static int failures = 0;

static void expect(int condition, const char* sentence) {
    if (!condition) {
        failures = 1;
        hostPrint(sentence);
    }
}

static int same(const char* a, const char* b) {
    for (; *a != '\0' && *a == *b; ++a, ++b) {
    }
    return *a == *b;
}

static void onBase(const vesk_base_ret* ret, void* user) {
    heard.ret = *ret;
    heard.user = user;
    hostSignal();
}

static void onLogin(const vesk_login_ret* ret, void* user) {
    for (unsigned i = 0; i + 1 < sizeof heard.openid && ret->openid[i] != '\0'; ++i) {
        heard.openid[i] = ret->openid[i];
    }
    const vesk_base_ret base = {ret->struct_size, ret->method_name_id, ret->ret_code, 0, 0, 0, 0};
    onBase(&base, user);
}

static void expectHeard(uint32_t size, int32_t method, const char* what) {
    expect(hostWait() && heard.ret.ret_code == VESK_SUCCESS, what);
    expect(heard.ret.struct_size == size && heard.ret.method_name_id == method, what);
    expect(heard.user == &failures, what);
}

static void expectHeld(int32_t held, int32_t code, const char* openid) {
    vesk_login_ret* ret = 0;
    expect(vesk_get_login_ret(&ret) == held && ret->ret_code == code, "whether a login is held");
    expect(same(ret->openid, openid), "the openid of the held login");
    vesk_login_ret_free(ret);
}

int visit(void) {
    vesk_login_observer observer = {sizeof observer, &failures, onLogin, onBase, 0};
    expect(vesk_set_login_observer(&observer) == 1, "the observer is refused");
    vesk_login("Steam", "", 0, 0);
    expectHeard(sizeof(vesk_login_ret), 112, "the login");
    expect(heard.openid[0] != '\0', "the openid");
    expectHeld(1, VESK_SUCCESS, heard.openid);
    vesk_logout(0, "", 0);
    expectHeard(sizeof(vesk_base_ret), 117, "the logout");
    expectHeld(0, VESK_NO_STORED_LOGIN, "");
    vesk_uninstall();
    hostPrint(failures ? "the visit went wrong" : "logged in, looked, logged out");
    return failures;
}
