#ifndef VESK_DEVKIT_DOCTOR_PRINTABLE_H
#define VESK_DEVKIT_DOCTOR_PRINTABLE_H

#include <string>
#include <string_view>

namespace vesk::doctor {

/// The text with "?" for control characters and for bytes that are not UTF-8: names from files and
/// certificates must neither steer a terminal nor break a JSON line.
std::string printable(std::string_view text);

} // namespace vesk::doctor

#endif
