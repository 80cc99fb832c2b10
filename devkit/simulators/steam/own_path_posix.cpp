#include "own_path.h"

#include <dlfcn.h>

namespace vesk::steamsim {

std::filesystem::path ownFolder() {
    Dl_info info{};
    dladdr(reinterpret_cast<const void*>(&ownFolder), &info);
    return std::filesystem::path(info.dli_fname).parent_path();
}

} // namespace vesk::steamsim
