#include "ownmodule.h"

#include <dlfcn.h>
#include <link.h>

namespace fs = std::filesystem;

namespace vesk::devkit {

fs::path moduleOf(const void* address) {
    Dl_info info = {};
    void* map = nullptr;
    if (dladdr1(address, &info, &map, RTLD_DL_LINKMAP) == 0) {
        return {};
    }
    // The program itself has no name there, and the other one is what it was called by.
    const char* const name = static_cast<const link_map*>(map)->l_name;
    std::error_code ignored;
    return *name == '\0' ? fs::read_symlink("/proc/self/exe", ignored) : fs::path(name);
}

fs::path ownFolder() {
    return moduleOf(reinterpret_cast<const void*>(&ownFolder)).parent_path();
}

void stayLoaded() {
    dlopen(moduleOf(reinterpret_cast<const void*>(&stayLoaded)).c_str(), RTLD_NOW | RTLD_NODELETE);
}

} // namespace vesk::devkit
