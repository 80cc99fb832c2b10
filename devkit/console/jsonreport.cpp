#include "jsonreport.h"

#include "jsonline.h"

using namespace Braxel::VESK;

void JsonReport::login(const VESKLoginRet& ret) {
    JsonLine("login").addRet(ret).print();
}
void JsonReport::qrCode(const VESKQrCodeRet& ret) {
    JsonLine("qrcode").addRet(ret).print();
}
void JsonReport::logout(const VESKBaseRet& ret) {
    JsonLine("logout").addRet(ret).print();
}
void JsonReport::status(bool held, const VESKLoginRet& ret) {
    JsonLine("status").add("held", held).addRet(ret).print();
}
void JsonReport::refreshed(bool held, const VESKLoginRet& ret) {
    JsonLine("refreshed")
        .add("held", held)
        .addMasked("token", ret.token)
        .add("tokenExpire", ret.tokenExpire)
        .print();
}
void JsonReport::timeout(const std::string& word) {
    JsonLine("timeout").add("word", word).print();
}
