#ifndef VESK_PLATFORMIMPL_FOUNDATION_FILE_VESKLOCALSTORAGE_H
#define VESK_PLATFORMIMPL_FOUNDATION_FILE_VESKLOCALSTORAGE_H

#include <string>

namespace Braxel {
namespace VESK {

/// The platform's key-value storage. PC platforms have none: every read is empty and every write
/// is dropped. Callers must work without it.
class VESKLocalStorage {
public:
    static std::string Read(const std::string& key);
    static void Write(const std::string& key, const std::string& value);

    /// Where local configuration files would lie; empty where there is no such place.
    static std::string ConfigPath();
};

} // namespace VESK
} // namespace Braxel

#endif
