/* A login, a look at it and a logout for the other ABI of Windows. Neither headers nor a runtime of
   that compiler's maker: Windows alone, by hand. */
#include "vesk/vesk_c.h"

typedef void* Handle;
__declspec(dllimport) Handle CreateSemaphoreA(void*, long, long, const char*);
__declspec(dllimport) int ReleaseSemaphore(Handle, long, long*);
__declspec(dllimport) unsigned long WaitForSingleObject(Handle, unsigned long);
__declspec(dllimport) Handle GetStdHandle(unsigned long);
__declspec(dllimport) int WriteFile(Handle, const void*, unsigned long, unsigned long*, void*);
__declspec(dllimport) void ExitProcess(unsigned);

static struct {
    vesk_base_ret ret; /* its texts are gone */
    char openid[64];
    void* user;
} heard;

static Handle signals;
static unsigned failures = 0;

static void print(const char* line) {
    unsigned long length = 0, written = 0;
    while (line[length] != '\0') {
        ++length;
    }
    WriteFile(GetStdHandle((unsigned long)-11), line, length, &written, 0);
}

static void expect(int condition, const char* sentence) {
    if (!condition) {
        failures = 1;
        print(sentence);
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
    ReleaseSemaphore(signals, 1, 0);
}

static void onLogin(const vesk_login_ret* ret, void* user) {
    for (unsigned i = 0; i + 1 < sizeof heard.openid && ret->openid[i] != '\0'; ++i) {
        heard.openid[i] = ret->openid[i];
    }
    const vesk_base_ret base = {ret->struct_size, ret->method_name_id, ret->ret_code, 0, 0, 0, 0};
    onBase(&base, user);
}

static void expectHeard(uint32_t size, int32_t method, const char* what) {
    expect(WaitForSingleObject(signals, 20000) == 0 && heard.ret.ret_code == VESK_SUCCESS, what);
    expect(heard.ret.struct_size == size && heard.ret.method_name_id == method, what);
    expect(heard.user == &failures, what);
}

static void expectHeld(int32_t held, int32_t code, const char* openid) {
    vesk_login_ret* ret = 0;
    expect(vesk_get_login_ret(&ret) == held && ret->ret_code == code, "whether a login is held");
    expect(same(ret->openid, openid), "the openid of the held login");
    vesk_login_ret_free(ret);
}

void start(void) {
    const vesk_login_observer observer = {sizeof observer, &failures, onLogin, onBase, 0};
    signals = CreateSemaphoreA(0, 0, 100, 0);
    expect(vesk_set_login_observer(&observer) == 1, "the observer is refused");
    vesk_login("Steam", "", 0, 0);
    expectHeard(sizeof(vesk_login_ret), 112, "the login");
    expect(heard.openid[0] != '\0', "the openid");
    expectHeld(1, VESK_SUCCESS, heard.openid);
    vesk_logout(0, "", 0);
    expectHeard(sizeof(vesk_base_ret), 117, "the logout");
    expectHeld(0, VESK_NO_STORED_LOGIN, "");
    vesk_uninstall();
    print(failures ? "the visit went wrong" : "logged in, looked, logged out");
    ExitProcess(failures);
}
