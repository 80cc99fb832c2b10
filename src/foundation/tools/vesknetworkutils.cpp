#include "foundation/tools/vesknetworkutils.h"

#include "config/veskconfigmanager.h"
#include "foundation/tools/md5.h"
#include "module/veskversion.h"
#include "platformimpl/foundation/os/clock.h"

namespace Braxel {
namespace VESK {

std::string VESKNetworkUtils::GetURL(const std::string& actionPath, int32_t channelID,
                                     const std::string& postBody, const std::string& seqID) {
    VESK_LOG_DEBUG("VESKNetworkUtils::GetURL",
                   "[ %s ] getURL actionPath:%s, channelID:%d, postBody:%s", seqID.c_str(),
                   actionPath.c_str(), channelID, postBody.c_str());
    VESKConfigManager* config = VESKConfigManager::GetInstance();
    Signer signer;
    signer.gameId = config->Get<const char*>("VESK_GAME_ID");
    signer.timestamp = static_cast<int32_t>(os::UnixSeconds());
    signer.sdkKey = config->Get<const char*>("VESK_SDK_KEY");
    signer.baseUrl = config->Get<const char*>("VESK_URL");
    return BuildURL(signer, actionPath, channelID, postBody, seqID);
}

std::string VESKNetworkUtils::BuildURL(const Signer& signer, const std::string& actionPath,
                                       int32_t channelID, const std::string& postBody,
                                       const std::string& seqID) {
    const std::string timestamp = std::to_string(signer.timestamp);
    const std::string path = "/v2/" + actionPath;
    std::string query = "channelid=" + std::to_string(channelID);
    query += "&gameid=" + signer.gameId + "&os=5";
    if (!seqID.empty()) {
        query += "&seq=" + seqID;
    }
    query += "&ts=" + timestamp + "&version=" + kSdkVersion;

    const bool decrypt = actionPath.find("auth/decrypt") != std::string::npos;
    std::string signedText = decrypt ? timestamp : path;
    if (!decrypt) {
        signedText.append("?").append(query);
    }
    signedText.append(postBody).append(signer.sdkKey);
    return signer.baseUrl + path + "?" + query + "&sig=" + MD5::Hex(signedText);
}

} // namespace VESK
} // namespace Braxel
