// Answers of a backend to a login. The first byte of an input is the transport's code.
#include <cstdint>
#include <string>

#include "expect.h"
#include "login/veskloginresults.h"
#include "vesk/veskerror.h"

using namespace Braxel::VESK;
using vesk::fuzz::expect;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) {
        return 0;
    }
    const int32_t code = data[0] % 4 == 0 ? data[0] : 0;
    const std::string body(reinterpret_cast<const char*>(data) + 1, size - 1);
    InnerLoginRet ret;
    ConvertLoginRet(ret, code, body, "1-1");
    const bool succeeded =
        ret.retCode == VESKError::SUCCESS || ret.retCode == VESKError::NEED_REALNAME;
    expect(succeeded || ret.retCode == VESKError::NETWORK_ERROR ||
               ret.retCode == VESKError::SERVER_ERROR,
           "an answer is a success or a failure of the network or the backend");
    expect(code == 0 || ret.retCode == VESKError::NETWORK_ERROR, "a transport's failure stays one");
    expect(!succeeded || ret.thirdCode == 0, "only \"ret\" 0 is a success");

    InnerLoginRet copy;
    copy.FromJson(ret.ToJson());
    expect(copy.thirdCode == ret.thirdCode && copy.tokenExpire == ret.tokenExpire,
           "numbers survive the stored form");
    return 0;
}
