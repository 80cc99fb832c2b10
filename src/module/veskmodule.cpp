#include "module/veskmodule.h"

#include <mutex>

#include "module/veskmutex.h"
#include "module/vesksingleton.h"

namespace Braxel {
namespace VESK {

namespace {

struct KnownDirectory {
    VESKMutex mutex;
    std::string path;
};

} // namespace

const char VESKModule::kTag[] = "UPRA";

std::string LibraryDirectory() {
    KnownDirectory& known = *VESKSingleton<KnownDirectory>::GetInstance();
    const std::lock_guard<VESKMutex> lock(known.mutex);
    if (known.path.empty()) {
        known.path = VESKModule::Directory();
    }
    return known.path;
}

} // namespace VESK
} // namespace Braxel
