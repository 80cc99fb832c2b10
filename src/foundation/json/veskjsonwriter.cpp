#include "foundation/json/veskjsonwriter.h"

#include <cstring>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "config/veskconfigmanager.h"
#include "foundation/json/veskjsonparse.h"
#include "foundation/log/vesklogger.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr const char* kConvert = "Braxel::VESK::VESKJsonWriter::convert";
constexpr const char* kMerge = "Braxel::VESK::VESKJsonWriter::merge";

} // namespace

struct VESKJsonBuffer::State {
    JsonStringBuffer buffer{nullptr, kUsualJsonSize};
    JsonStringWriter writer{buffer};
};

VESKJsonBuffer::VESKJsonBuffer() : mState(new State) {}

VESKJsonBuffer::~VESKJsonBuffer() = default;

std::string VESKJsonBuffer::text() const {
    return std::string(mState->buffer.GetString(), mState->buffer.GetSize());
}

VESKJsonWriter::VESKJsonWriter(VESKJsonBuffer& buffer)
    : mBuffer(&buffer),
      mLogEnable(VESKConfigManager::GetInstance()->Get<bool>("VESK_JSON_LOG_ENABLE", false)) {}

bool VESKJsonWriter::ready(const char* method) const {
    if (mBuffer == nullptr) {
        VESK_LOG_AT(kLogError, method, "need construct first, suggest use VESKJsonManager");
    }
    return mBuffer != nullptr;
}

void VESKJsonWriter::objectBegin() {
    if (ready("Braxel::VESK::VESKJsonWriter::objectBegin")) {
        mBuffer->mState->writer.StartObject();
    }
}

void VESKJsonWriter::objectEnd() {
    if (ready("Braxel::VESK::VESKJsonWriter::objectEnd")) {
        mBuffer->mState->writer.EndObject();
    }
}

void VESKJsonWriter::putKey(const char* key) {
    mBuffer->mState->writer.Key(key, static_cast<rapidjson::SizeType>(std::strlen(key)));
}

void VESKJsonWriter::putString(const char* key, const char* text, size_t length) {
    putKey(key);
    mBuffer->mState->writer.String(text, static_cast<rapidjson::SizeType>(length));
}

void VESKJsonWriter::convert(const char* key, int32_t value) {
    if (!ready(kConvert)) {
        return;
    }
    putKey(key);
    mBuffer->mState->writer.Int(value);
    if (mLogEnable) {
        VESK_LOG_DEBUG("VESKJsonWriter::convert", "key : %s , val(int) : %d", key, value);
    }
}

void VESKJsonWriter::convert(const char* key, int64_t value) {
    if (!ready(kConvert)) {
        return;
    }
    putKey(key);
    mBuffer->mState->writer.Int64(value);
    if (mLogEnable) {
        VESK_LOG_DEBUG("VESKJsonWriter::convert", "key : %s , val(int) : %lld", key,
                       static_cast<long long>(value));
    }
}

void VESKJsonWriter::convert(const char* key, bool value) {
    if (!ready(kConvert)) {
        return;
    }
    putKey(key);
    mBuffer->mState->writer.Bool(value);
    if (mLogEnable) {
        VESK_LOG_DEBUG("VESKJsonWriter::convert", "key : %s , val(int) : %d", key, value ? 1 : 0);
    }
}

void VESKJsonWriter::convert(const char* key, float value) {
    if (!ready(kConvert)) {
        return;
    }
    putKey(key);
    mBuffer->mState->writer.Double(value);
    if (mLogEnable) {
        VESK_LOG_DEBUG("VESKJsonWriter::convert", "key : %s , val(float) : %.9g", key,
                       static_cast<double>(value));
    }
}

void VESKJsonWriter::convert(const char* key, const char* value) {
    if (!ready(kConvert)) {
        return;
    }
    const char* text = value == nullptr ? "" : value;
    putString(key, text, std::strlen(text));
    if (mLogEnable) {
        VESK_LOG_DEBUG("VESKJsonWriter::convert", "key : %s , val(char*) : %s, type: %d", key, text,
                       static_cast<int>(rapidjson::kStringType));
    }
}

void VESKJsonWriter::convert(const char* key, const String& value) {
    if (!ready(kConvert)) {
        return;
    }
    putString(key, value.c_str(), value.length());
    if (mLogEnable) {
        VESK_LOG_DEBUG("VESKJsonWriter::convert", "key : %s , val(String) : %s , type : %d", key,
                       value.c_str(), static_cast<int>(rapidjson::kStringType));
    }
}

void VESKJsonWriter::convert(const char* key, const std::string& value) {
    if (!ready(kConvert)) {
        return;
    }
    putString(key, value.data(), value.size());
    if (mLogEnable) {
        VESK_LOG_DEBUG("VESKJsonWriter::convert", "key : %s , val(String) : %s , type : %d", key,
                       value.c_str(), static_cast<int>(rapidjson::kStringType));
    }
}

void VESKJsonWriter::convertJson(const char* key, const std::string& json) {
    if (!ready(kConvert)) {
        return;
    }
    JsonDocument document;
    const bool usable =
        ParseJson(json, document, kConvert) && (document.IsObject() || document.IsArray());
    const std::string text = usable ? json : "{}";
    putKey(key);
    mBuffer->mState->writer.RawValue(text.data(), text.size(),
                                     usable ? document.GetType() : rapidjson::kObjectType);
}

void VESKJsonWriter::merge(std::string& json1, const std::string& json2) {
    if (json1.size() < 2) {
        VESK_LOG_DEBUG("VESKJsonWriter::merge",
                       "json1 : %s, json2 : %s, merge stopped, copy json2 to json1", json1.c_str(),
                       json2.c_str());
        json1 = json2;
        return;
    }
    if (json2.size() < 2) {
        VESK_LOG_ERROR("VESKJsonWriter::merge",
                       "json1 : %s, json2 : %s error format, merge stopped", json1.c_str(),
                       json2.c_str());
        return;
    }
    constexpr size_t kChunkSize = 1024;
    JsonDocument::AllocatorType allocator(kChunkSize);
    JsonDocument target(&allocator);
    JsonDocument source(&allocator);
    if (!ParseJson(json1, target, kMerge) || !ParseJson(json2, source, kMerge)) {
        return;
    }
    if (!target.IsObject() || !source.IsObject()) {
        VESK_LOG_ERROR("VESKJsonWriter::merge",
                       "json1 : %s, json2 : %s error format, merge stopped", json1.c_str(),
                       json2.c_str());
        return;
    }
    for (auto member = source.MemberBegin(); member != source.MemberEnd(); ++member) {
        target.RemoveMember(member->name);
        JsonValue name(member->name, allocator);
        JsonValue value(member->value, allocator);
        target.AddMember(name, value, allocator);
    }
    json1 = JsonText(target);
}

} // namespace VESK
} // namespace Braxel
