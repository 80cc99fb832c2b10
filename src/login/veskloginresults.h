#ifndef VESK_LOGIN_VESKLOGINRESULTS_H
#define VESK_LOGIN_VESKLOGINRESULTS_H

#include <cstdint>
#include <memory>
#include <string>

#include "common/veskinnerrecords.h"
#include "foundation/http/veskhttpmanager.h"
#include "foundation/tools/veskhttpparams.h"
#include "vesk/veskret.h"

namespace Braxel {
namespace VESK {

class VESKJsonReader;

/// The backend's answer to a logout.
struct VESKLogoutRet : VESKBaseRet {
    static constexpr const char* kRecordName = "VESKLogoutRet";

    VESKLogoutRet() { thirdCode = 0; }

    /// Deliberate: whatever the body says counts as success.
    void FromJson(const VESKJsonReader& /*reader*/) {}
};

/// Posts @p body; @p context goes to the callback, which frees it, and is freed here when there
/// will be no callback.
template <typename Context>
void Post(const std::string& url, HttpRequesterCallback callback, const std::string& body,
          std::unique_ptr<Context> context, const std::string& seqID) {
    VESKHTTPParams params(HTTP_OPT_POST, url, callback, body, context.get());
    params.seqID = seqID;
    if (VESKHTTPManager::GetInstance()->Request(&params)) {
        context.release(); // NOLINT(bugprone-unused-return-value): the callback owns it now
    }
}

/// Fills @p ret from the backend's answer to a login.
/// @param code 0, or the transport's failure.
void ConvertLoginRet(InnerLoginRet& ret, int32_t code, const std::string& respBody,
                     const std::string& seqID);

void DeliverLoginRet(const InnerLoginRet& ret, const std::string& seqID);
void DeliverLoginFailure(int32_t code, const std::string& message, int32_t methodNameID,
                         const std::string& seqID);
void DeliverNetworkError(int32_t result, int32_t methodNameID, const std::string& seqID);

/// To the game, or to the login manager itself as if a channel had answered.
void DeliverLogoutRet(InnerBaseRet ret, int32_t observerID, const std::string& seqID);

} // namespace VESK
} // namespace Braxel

#endif
