#ifndef VESK_PLATFORMIMPL_FOUNDATION_FILE_VESKLIBRARYDIRECTORY_H
#define VESK_PLATFORMIMPL_FOUNDATION_FILE_VESKLIBRARYDIRECTORY_H

#include <string>

namespace Braxel {
namespace VESK {

/// The directory that holds the library's own file, with its trailing separator. Found on first
/// use and kept; as long as it cannot be found it is empty and each call tries again. It writes no
/// log line: the logger itself asks for it.
std::string LibraryDirectory();

} // namespace VESK
} // namespace Braxel

#endif
