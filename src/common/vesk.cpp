#include "common/vesk.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <mutex>

#include "config/veskconfigmanager.h"
#include "foundation/json/veskjsonwriter.h"
#include "foundation/log/vesklogger.h"
#include "module/veskmutex.h"
#include "module/vesksingleton.h"
#include "module/veskversion.h"
#include "platformimpl/foundation/file/vesklocalstorage.h"
#include "platformimpl/foundation/os/clock.h"
#include "platformimpl/foundation/os/guid.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr uint32_t kLastSequence = 420000000;

struct Identity {
    VESKMutex mutex;
    std::string gameId;
    std::string uuid;
    uint32_t seqCounter = 0;
    std::string seqId;
};

Identity& TheIdentity() {
    return *VESKSingleton<Identity>::GetInstance();
}

void CheckKeys(Identity& identity) {
    if (!identity.gameId.empty() && !identity.uuid.empty()) {
        return;
    }
    // The file's value only: a sequence id must not change with what a server or the game sets.
    identity.gameId = VESKConfigManager::GetInstance()->GetDefaultValue("VESK_GAME_ID");
    const std::string storedUuid = VESKLocalStorage::Read("upra_uuid");
    const std::string storedCounter = VESKLocalStorage::Read("upra_seq_id_primary_key");
    VESK_LOG_DEBUG("VESK::CheckSequenceKeys",
                   "from storage GameId %s, UUID %s, SeqId primary key %s ",
                   identity.gameId.c_str(), storedUuid.c_str(), storedCounter.c_str());
    if (!storedUuid.empty()) {
        identity.uuid = storedUuid;
    } else {
        identity.uuid = VESK::GetUUID();
        VESKLocalStorage::Write("upra_uuid", identity.uuid);
        VESK_LOG_DEBUG("VESK::CheckSequenceKeys", "not found UUID , create new %s",
                       identity.uuid.c_str());
    }
    if (!storedCounter.empty()) {
        identity.seqCounter =
            static_cast<uint32_t>(std::strtoul(storedCounter.c_str(), nullptr, 10));
    }
}

std::string FormatUuid() {
    os::Guid guid = {};
    if (!os::CreateGuid(guid)) {
        return {};
    }
    char text[64] = {};
    // Deliberate: the third group in lower case, all others in upper case.
    std::snprintf(text, sizeof text, "%08X-%04X-%04x-%02X%02X-%02X%02X%02X%02X%02X%02X",
                  static_cast<unsigned>(guid.data1), guid.data2, guid.data3, guid.data4[0],
                  guid.data4[1], guid.data4[2], guid.data4[3], guid.data4[4], guid.data4[5],
                  guid.data4[6], guid.data4[7]);
    return text;
}

struct ProcessUuid {
    const std::string text = FormatUuid();
};

} // namespace

void VESK::CheckSequenceKeys() {
    Identity& identity = TheIdentity();
    const std::lock_guard<VESKMutex> lock(identity.mutex);
    CheckKeys(identity);
}

std::string VESK::CreateSequenceId() {
    Identity& identity = TheIdentity();
    const std::lock_guard<VESKMutex> lock(identity.mutex);
    CheckKeys(identity);
    identity.seqCounter = NextSequence(identity.seqCounter);
    const int32_t seconds = static_cast<int32_t>(os::UnixSeconds());
    identity.seqId = identity.gameId + "-" + identity.uuid + "-" + std::to_string(seconds) + "-" +
                     std::to_string(identity.seqCounter);
    VESK_LOG_DEBUG("VESK::CreateSequenceId", "current SeqId %s ", identity.seqId.c_str());
    return identity.seqId;
}

uint32_t VESK::NextSequence(uint32_t counter) {
    return (counter < kLastSequence ? counter : 0) + 1;
}

std::string VESK::GetUUID() {
    return VESKSingleton<ProcessUuid>::GetInstance()->text;
}

std::string VESK::GetDeviceInfo() {
    VESKJsonBuffer buffer;
    VESKJsonWriter writer(buffer);
    writer.objectBegin();
    if (VESKConfigManager::GetInstance()->Get<bool>("VESK_DEVICE_INFO", true)) {
        writer.convert("uuid", "");
        writer.convert("device_language", "");
        writer.convert("app_version", "");
        writer.convert("screen_dpi", 0.0F);
        writer.convert("resolution", "");
        writer.convert("trade_mark", kPlatformName);
        writer.convert("manufacturer", kPlatformName);
        writer.convert("model", "");
        writer.convert("apn", "");
        writer.convert("ram_info", "");
        writer.convert("rom_info", "");
        writer.convert("cpu_info", "");
    }
    writer.objectEnd();
    return buffer.text();
}

} // namespace VESK
} // namespace Braxel
