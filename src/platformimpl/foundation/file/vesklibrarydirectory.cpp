#include "platformimpl/foundation/file/vesklibrarydirectory.h"

#include <mutex>

#include "common/vesksingleton.h"
#include "module/veskmodule.h"
#include "platformimpl/foundation/os/mutex.h"

namespace Braxel {
namespace VESK {

namespace {

struct KnownDirectory {
    os::Mutex mutex;
    std::string path;
};

} // namespace

std::string LibraryDirectory() {
    KnownDirectory& known = *VESKSingleton<KnownDirectory>::GetInstance();
    const std::lock_guard<os::Mutex> lock(known.mutex);
    if (known.path.empty()) {
        known.path = VESKModule::Directory();
    }
    return known.path;
}

} // namespace VESK
} // namespace Braxel
