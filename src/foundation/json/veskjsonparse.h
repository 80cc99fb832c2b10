#ifndef VESK_FOUNDATION_JSON_VESKJSONPARSE_H
#define VESK_FOUNDATION_JSON_VESKJSONPARSE_H

#include <cstddef>
#include <rapidjson/document.h>
#include <string>

#include "foundation/json/veskjsontypes.h"

namespace Braxel {
namespace VESK {

/// What a buffer for JSON text starts with, in bytes: most records then need no other one.
constexpr size_t kUsualJsonSize = 1024;

/// Parses @p json, which may come from outside and be hostile: parsing needs no call stack, and
/// nesting deeper than 256 levels is refused, so that whatever walks the document afterwards needs
/// little of it either.
///
/// A failure is logged with an excerpt, as a line of @p method, and leaves @p document null.
/// @param method fully qualified
bool ParseJson(const std::string& json, JsonDocument& document, const char* method);

/// The compact text of @p value.
std::string JsonText(const JsonValue& value);

} // namespace VESK
} // namespace Braxel

#endif
