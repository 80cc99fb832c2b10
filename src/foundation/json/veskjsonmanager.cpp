#include "foundation/json/veskjsonmanager.h"

#include "foundation/json/veskjsonparse.h"
#include "foundation/log/vesklogger.h"

namespace Braxel {
namespace VESK {

VESKJsonManager::VESKJsonManager(std::string& json) : mDocument(new JsonDocument) {
    if (json.size() < 2) {
        json = "{}";
    }
    ParseJson(json, *mDocument, "Braxel::VESK::VESKJsonManager::VESKJsonManager");
}

VESKJsonManager::~VESKJsonManager() = default;

void VESKJsonManager::PutIfAbsent(const char* key, const char* value) {
    if (!mDocument->IsObject()) {
        VESK_LOG_ERROR("VESKJsonManager::PutIfAbsent",
                       "unknown error occur while parser json or val is NULL");
        return;
    }
    auto& allocator = mDocument->GetAllocator();
    const auto member = mDocument->FindMember(key);
    if (member == mDocument->MemberEnd()) {
        JsonValue name(key, allocator);
        JsonValue text(value, allocator);
        mDocument->AddMember(name, text, allocator);
    } else if (member->value.IsString()) {
        // Copied: callers pass temporaries.
        member->value.SetString(value, allocator);
    } else {
        VESK_LOG_ERROR("VESKJsonManager::PutIfAbsent", "unknown error , it should be String type");
    }
}

bool VESKJsonManager::IsObject() const {
    return mDocument->IsObject();
}

std::string VESKJsonManager::GetString(const char* key) const {
    if (!mDocument->IsObject()) {
        return {};
    }
    const auto member = mDocument->FindMember(key);
    if (member == mDocument->MemberEnd() || !member->value.IsString()) {
        return {};
    }
    return std::string(member->value.GetString(), member->value.GetStringLength());
}

void VESKJsonManager::ForEachString(
    const std::function<void(const std::string& key, const std::string& value)>& visit) const {
    if (!mDocument->IsObject()) {
        return;
    }
    for (auto member = mDocument->MemberBegin(); member != mDocument->MemberEnd(); ++member) {
        if (member->value.IsString()) {
            visit(std::string(member->name.GetString(), member->name.GetStringLength()),
                  std::string(member->value.GetString(), member->value.GetStringLength()));
        }
    }
}

VESKJsonManager::operator std::string() const {
    return JsonText(*mDocument);
}

} // namespace VESK
} // namespace Braxel
