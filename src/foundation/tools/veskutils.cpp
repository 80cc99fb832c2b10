#include "foundation/tools/veskutils.h"

#include <map>
#include <mutex>

#include "foundation/json/veskjsonmanager.h"
#include "foundation/log/vesklogger.h"
#include "module/veskmutex.h"
#include "module/vesksingleton.h"
#include "platformimpl/foundation/file/veskfileutils.h"
#include "platformimpl/foundation/file/vesklocalstorage.h"

namespace Braxel {
namespace VESK {

namespace {

using MessageTable = std::map<std::string, std::string>;

void Load(MessageTable& table) {
    const std::string name = "VESKRetMsg_" + VESKLocalStorage::Read("ret_msg_lan") + ".json";
    std::string content = VESKFileUtils::GetInstance()->ReadConfigFile(name);
    if (content.empty()) {
        VESK_LOG_DEBUG("VESKUtils::GetRetMsg", "miss config file :%s", name.c_str());
        content = VESKFileUtils::GetInstance()->ReadConfigFile("VESKRetMsg.json");
    }
    const VESKJsonManager json(content);
    json.ForEachString(
        [&table](const std::string& code, const std::string& message) { table[code] = message; });
    if (!json.IsObject() || std::string(json) == "{}") {
        VESK_LOG_DEBUG("VESKUtils::GetRetMsg",
                       "miss VESKRetMsg file in assert(Android) or VESKAppSetting.bundle(iOS)");
    }
}

struct Messages {
    VESKMutex mutex;
    MessageTable table;
};

} // namespace

std::string VESKUtils::GetRetMsg(int32_t retCode) {
    Messages& messages = *VESKSingleton<Messages>::GetInstance();
    const std::lock_guard<VESKMutex> lock(messages.mutex);
    MessageTable& table = messages.table;
    if (table.empty()) {
        Load(table);
    }
    if (table.empty()) {
        VESK_LOG_DEBUG("VESKUtils::GetRetMsg", "retMsgMap empty");
        return {};
    }
    // Deliberate: an unknown code enters the table with an empty message.
    return table[std::to_string(retCode)];
}

} // namespace VESK
} // namespace Braxel
