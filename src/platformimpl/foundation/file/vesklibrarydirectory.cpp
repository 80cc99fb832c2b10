#include "platformimpl/foundation/file/vesklibrarydirectory.h"

#include <mutex>

#include "module/veskmodule.h"

namespace Braxel {
namespace VESK {

std::string LibraryDirectory() {
    static std::mutex mutex;
    static std::string& directory = *new std::string;
    const std::lock_guard<std::mutex> lock(mutex);
    if (directory.empty()) {
        directory = VESKModule::Directory();
    }
    return directory;
}

} // namespace VESK
} // namespace Braxel
