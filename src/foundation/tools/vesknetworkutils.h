#ifndef VESK_FOUNDATION_TOOLS_VESKNETWORKUTILS_H
#define VESK_FOUNDATION_TOOLS_VESKNETWORKUTILS_H

#include <cstdint>
#include <string>

#include "foundation/json/veskjsonreader.h"
#include "foundation/log/vesklogger.h"
#include "foundation/tools/veskutils.h"
#include "vesk/veskerror.h"

namespace Braxel {
namespace VESK {

/// Signed backend addresses, and the shared handling of answers.
class VESKNetworkUtils {
public:
    /// What a signed address depends on besides the request itself.
    struct Signer {
        std::string baseUrl; ///< VESK_URL
        std::string gameId;  ///< VESK_GAME_ID
        std::string sdkKey;  ///< VESK_SDK_KEY
        int32_t timestamp;   ///< Unix seconds
    };

    /// The full, signed address of @p actionPath ("auth/login") for a request with the body
    /// @p postBody, by the configuration and the clock. A configuration value that is not set
    /// leaves its place empty.
    static std::string GetURL(const std::string& actionPath, int32_t channelID,
                              const std::string& postBody, const std::string& seqID);

    /// GetURL() without its surroundings.
    static std::string BuildURL(const Signer& signer, const std::string& actionPath,
                                int32_t channelID, const std::string& postBody,
                                const std::string& seqID);

    /// Fills the head of @p record from the outcome of a request. Record supplies kRecordName,
    /// FromJson(reader), retCode, retMsg, thirdCode and thirdMsg.
    template <typename Record>
    static void HandleNetworkResponse(int32_t ret, const std::string& respBody, Record& record,
                                      const std::string& seqID) {
        VESK_LOG_DEBUG("VESKNetworkUtils::HandleNetworkResponse",
                       "[ %s ], handle network response data with ret : %d and respBody : %s",
                       seqID.c_str(), ret, respBody.c_str());
        if (ret != 0) {
            SetCode(record, VESKError::NETWORK_RESPONSE_ERROR);
            record.thirdCode = ret;
            record.thirdMsg = "network library error";
            return;
        }
        if (respBody.empty()) {
            SetCode(record, VESKError::SERVER_ERROR);
            record.thirdCode = 0;
            record.retMsg = "server returns data exception";
            return;
        }
        VESK_LOG_DEBUG("VESKNetworkUtils::HandleNetworkResponse", "[ %s ], json to struct %s start",
                       seqID.c_str(), Record::kRecordName);
        VESKJsonReader reader;
        reader.init(respBody);
        record.FromJson(reader);
        VESK_LOG_DEBUG("VESKNetworkUtils::HandleNetworkResponse",
                       "[ %s ], json to struct %s finish", seqID.c_str(), Record::kRecordName);
        SetCode(record, record.thirdCode != 0 ? VESKError::SERVER_ERROR : VESKError::SUCCESS);
    }

private:
    template <typename Record>
    static void SetCode(Record& record, int32_t code) {
        record.retCode = code;
        record.retMsg = VESKUtils::GetRetMsg(code);
    }
};

} // namespace VESK
} // namespace Braxel

#endif
