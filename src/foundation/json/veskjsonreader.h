#ifndef VESK_FOUNDATION_JSON_VESKJSONREADER_H
#define VESK_FOUNDATION_JSON_VESKJSONREADER_H

#include <cstdint>
#include <memory>
#include <string>

#include "foundation/json/veskjsontypes.h"
#include "vesk/veskstring.h"

namespace Braxel {
namespace VESK {

/// Walks a JSON text and reads typed members. Nothing it meets is an error to the caller: a
/// missing member, a null and a value of another type leave the target as it was.
///
/// Readers of one document share it; they are not for sharing between threads.
class VESKJsonReader {
public:
    VESKJsonReader();

    /// Opens @p json. The cursor is set only when the root is an object.
    void init(const std::string& json);

    /// Whether there is an object to read members from.
    bool hasCursor() const { return mCursor != nullptr; }

    /// Whether the last text could not be parsed at all.
    bool parseFailed() const { return mParseFailed; }

    /// Goes into the member @p key, an object or array, for next() to walk.
    /// @return false when there is no such member.
    bool enter(const char* key);

    /// A reader on the next member or element of the parent that enter() chose; one without a
    /// cursor past the end.
    VESKJsonReader next();

    void read(const char* key, int32_t& target) const;
    void read(const char* key, int64_t& target) const;
    void read(const char* key, bool& target) const;
    void read(const char* key, float& target) const;
    /// A string gives its bytes, an object or array its compact text.
    void read(const char* key, std::string& target) const;
    void read(const char* key, String& target) const;

private:
    const JsonValue* find(const char* key) const;

    template <typename T>
    void readText(const char* key, T& target) const;

    std::shared_ptr<JsonDocument> mDocument;
    const JsonValue* mCursor = nullptr;
    const JsonValue* mParent = nullptr;
    int32_t mIndex = -1;
    bool mParseFailed = false;
    bool mLogEnable = false;
};

} // namespace VESK
} // namespace Braxel

#endif
