// README's snippet brings the rest. There is no Steam client, so the login fails inside the call.
#include <cstdio>

#include "vesk/vesklogin.h"

void startLogin();

int main() {
    startLogin();
    Braxel::VESK::VESKLoginRet ret;
    Braxel::VESK::VESKLogin::GetLoginRet(ret);
    std::printf("held: %d %s\n", static_cast<int>(ret.retCode), ret.retMsg.c_str());
    return 0;
}
