#ifndef VESK_DEVKIT_LOGREAD_JSONESCAPES_H
#define VESK_DEVKIT_LOGREAD_JSONESCAPES_H

#include <string>
#include <string_view>

namespace vesk::logread {

/// The text with each "\u0065" of a printable ASCII character as the character itself, so that
/// names and quotes can be found by how they look. A quote or backslash keeps the plain escape that
/// it needs, also in JSON that is a text inside JSON, to any depth that makes sense.
std::string withoutJsonEscapes(std::string_view text);

} // namespace vesk::logread

#endif
