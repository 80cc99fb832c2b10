#include "own_path.h"

#include <dlfcn.h>

namespace vesk::steamsim {

std::filesystem::path ownFolder() {
    Dl_info info{};
    dladdr(reinterpret_cast<const void*>(&ownFolder), &info);
    return std::filesystem::path(info.dli_fname).parent_path();
}

void stayLoaded() {
    Dl_info info{};
    dladdr(reinterpret_cast<const void*>(&stayLoaded), &info);
    dlopen(info.dli_fname, RTLD_NOW | RTLD_NODELETE);
}

} // namespace vesk::steamsim
