#include "foundation/json/veskjsonreader.h"

#include "config/veskconfigmanager.h"
#include "foundation/json/veskjsonparse.h"
#include "foundation/log/vesklogger.h"

namespace Braxel {
namespace VESK {

namespace {

// rapidjson's own chunks of 64 KiB are so large that the heap tidies itself up after each document.
struct Parsed {
    static constexpr size_t kChunkSize = 4096;
    JsonDocument::AllocatorType allocator{kChunkSize};
    JsonDocument document{&allocator};
};

} // namespace

VESKJsonReader::VESKJsonReader() = default;

void VESKJsonReader::init(const std::string& json) {
    mLogEnable = VESKConfigManager::GetInstance()->Get<bool>("VESK_JSON_LOG_ENABLE", false);
    if (mLogEnable) {
        VESK_LOG_DEBUG("VESKJsonReader::init", "json src : %s", json.c_str());
    }
    mIndex = -1;
    mCursor = nullptr;
    mParent = nullptr;
    mParseFailed = false;
    if (json.size() < 2) {
        VESK_LOG_ERROR("VESKJsonReader::init", "value = NULL");
        mParseFailed = true;
        return;
    }
    const auto parsed = std::make_shared<Parsed>();
    mDocument = std::shared_ptr<JsonDocument>(parsed, &parsed->document);
    mParseFailed = !ParseJson(json, *mDocument, "Braxel::VESK::VESKJsonReader::init");
    if (mDocument->IsObject()) {
        mCursor = mDocument.get();
    }
}

bool VESKJsonReader::enter(const char* key) {
    const JsonValue* member = find(key);
    mParent = member;
    mIndex = -1;
    return member != nullptr && (member->IsObject() || member->IsArray());
}

VESKJsonReader VESKJsonReader::next() {
    VESKJsonReader reader;
    reader.mDocument = mDocument;
    reader.mLogEnable = mLogEnable;
    if (mParent == nullptr) {
        VESK_LOG_ERROR("VESKJsonReader::next", "parent null");
        return reader;
    }
    if (!mParent->IsObject() && !mParent->IsArray()) {
        VESK_LOG_ERROR("VESKJsonReader::next", "parent no iterator");
        return reader;
    }
    const auto at = static_cast<rapidjson::SizeType>(++mIndex);
    if (mParent->IsArray() && at < mParent->Size()) {
        reader.mCursor = &(*mParent)[at];
    } else if (mParent->IsObject() && at < mParent->MemberCount()) {
        reader.mCursor = &(mParent->MemberBegin() + at)->value;
    }
    return reader;
}

const JsonValue* VESKJsonReader::find(const char* key) const {
    if (mCursor == nullptr || !mCursor->IsObject()) {
        VESK_LOG_ERROR("VESKJsonReader::read",
                       "unknown error occur while parser json or val is NULL");
        return nullptr;
    }
    const auto member = mCursor->FindMember(key);
    if (member == mCursor->MemberEnd()) {
        return nullptr;
    }
    if (member->value.IsNull()) {
        VESK_LOG_ERROR("VESKJsonReader::read", "value = NULL");
        return nullptr;
    }
    return &member->value;
}

namespace {

void LogWrongType() {
    VESK_LOG_ERROR("VESKJsonReader::read", "unknown error occur while parser json");
}

} // namespace

void VESKJsonReader::read(const char* key, int32_t& target) const {
    const JsonValue* value = find(key);
    if (value != nullptr && value->IsInt()) {
        target = value->GetInt();
    } else if (value != nullptr) {
        LogWrongType();
    }
}

void VESKJsonReader::read(const char* key, int64_t& target) const {
    const JsonValue* value = find(key);
    if (value != nullptr && value->IsInt64()) {
        target = value->GetInt64();
    } else if (value != nullptr) {
        LogWrongType();
    }
}

void VESKJsonReader::read(const char* key, bool& target) const {
    const JsonValue* value = find(key);
    if (value != nullptr && value->IsBool()) {
        target = value->GetBool();
    } else if (value != nullptr) {
        LogWrongType();
    }
}

void VESKJsonReader::read(const char* key, float& target) const {
    const JsonValue* value = find(key);
    if (value != nullptr && value->IsNumber()) {
        target = static_cast<float>(value->GetDouble());
    } else if (value != nullptr) {
        LogWrongType();
    }
}

template <typename T>
void VESKJsonReader::readText(const char* key, T& target) const {
    const JsonValue* value = find(key);
    if (value == nullptr) {
        return;
    }
    if (value->IsString()) {
        target.assign(value->GetString(), value->GetStringLength());
    } else if (value->IsObject() || value->IsArray()) {
        const std::string text = JsonText(*value);
        target.assign(text.data(), static_cast<uint32_t>(text.size()));
    } else {
        LogWrongType();
    }
}

void VESKJsonReader::read(const char* key, std::string& target) const {
    readText(key, target);
}

void VESKJsonReader::read(const char* key, String& target) const {
    readText(key, target);
}

} // namespace VESK
} // namespace Braxel
