#include "flow/messengertest.h"

namespace vesk::test {

MessengerTest::MessengerTest(const char* name, const char* simulator, const char* fileName)
    : Messenger(game, simulator, fileName), channel(name) {
    game.configure("FERNO_APP_ID=f-7\nKZ_APP_ID=k-7\nKZ_APP_KEY=k-key");
}

void MessengerTest::startLogin() {
    start();
    VESKLogin::Login(channel.c_str(), "", "", "");
}

VESKLoginRet MessengerTest::scanAndLogin() {
    startLogin();
    return observer.nextLogin().ret;
}

} // namespace vesk::test
