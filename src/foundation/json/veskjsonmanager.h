#ifndef VESK_FOUNDATION_JSON_VESKJSONMANAGER_H
#define VESK_FOUNDATION_JSON_VESKJSONMANAGER_H

#include <functional>
#include <memory>
#include <string>

#include "foundation/json/veskjsontypes.h"

namespace Braxel {
namespace VESK {

/// Owns one parsed JSON document. It asks no configuration key, so that return messages may be read
/// at any time. Not for sharing between threads.
class VESKJsonManager {
public:
    /// Parses @p json. Deliberate: a text shorter than 2 bytes is replaced by "{}" in the
    /// caller's variable. A text that cannot be parsed gives an empty document.
    explicit VESKJsonManager(std::string& json);
    ~VESKJsonManager();
    VESKJsonManager(const VESKJsonManager&) = delete;
    VESKJsonManager& operator=(const VESKJsonManager&) = delete;

    /// Adds the string member @p key. Deliberate, despite the name: an existing string member is
    /// overwritten. A member of another type, and a document that is no object, stay as they are.
    void PutIfAbsent(const char* key, const char* value);

    bool IsObject() const;

    /// The string member @p key; empty when there is none of that type.
    std::string GetString(const char* key) const;

    /// Calls @p visit for each string member, in order.
    void ForEachString(
        const std::function<void(const std::string& key, const std::string& value)>& visit) const;

    /// The compact text of the document; "null" for an empty one.
    operator std::string() const; // NOLINT(google-explicit-constructor): the class's purpose

private:
    std::unique_ptr<JsonDocument> mDocument;
};

} // namespace VESK
} // namespace Braxel

#endif
