#include "module/veskmodule.h"

#include <climits>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <openssl/crypto.h>
#include <unistd.h>

namespace Braxel {
namespace VESK {

namespace {

// Before OpenSSL is started for the first time, or it clears itself away while the process ends
// and requests still run on their detached threads.
[[maybe_unused]] const int gOpenSslKept = OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);

/// @p folder without anything that depends on the working directory; as it is when that fails.
std::string Absolute(const std::string& folder) {
    // An open folder knows its path even where the working directory has been removed.
    const int opened = open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    char path[PATH_MAX] = {};
    const std::string link = "/proc/self/fd/" + std::to_string(opened);
    const ssize_t length = opened < 0 ? -1 : readlink(link.c_str(), path, sizeof path);
    if (opened >= 0) {
        close(opened);
    }
    return length > 0 && path[0] == '/' ? std::string(path, static_cast<size_t>(length)) : folder;
}

/// The library's own file. Its folder is the one that the game named: when the file there is a
/// link, what belongs to the library still lies beside the link.
std::string LoadedPath() {
    Dl_info info = {};
    if (dladdr(reinterpret_cast<void*>(&LoadedPath), &info) == 0 || info.dli_fname == nullptr ||
        *info.dli_fname == '\0') {
        return {};
    }
    std::string path = info.dli_fname;
    if (path[0] == '/') {
        return path;
    }
    // An empty entry of LD_LIBRARY_PATH is the working directory, too.
    if (path.find('/') == std::string::npos) {
        path.insert(0, "./");
    }
    const size_t slash = path.rfind('/');
    return Absolute(path.substr(0, slash)) + path.substr(slash);
}

std::mutex gPathMutex;

std::string& OwnPath() {
    static std::string& path = *new std::string(LoadedPath());
    return path;
}

// While the library is being loaded: the loader keeps the path as it was asked for it, and the
// game may change its working directory at any time after.
[[maybe_unused]] const std::string& gOwnPath = OwnPath();

} // namespace

std::string VESKModule::Directory() {
    const std::lock_guard<std::mutex> lock(gPathMutex);
    const std::string& path = OwnPath();
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

void VESKModule::UsePath(const std::string& path) {
    const std::lock_guard<std::mutex> lock(gPathMutex);
    OwnPath() = path;
}

void VESKModule::AtUnload(Release& /*release*/) {}

// Linked with -z nodelete: threads may outlive any dlclose.
void VESKModule::StartUnload() {}
void VESKModule::StayLoaded() {}
VESKModule::Reference::Reference() noexcept : mModule(nullptr) {}
VESKModule::Reference::~Reference() {
    static_cast<void>(mModule); // the library stays anyway
}

} // namespace VESK
} // namespace Braxel
