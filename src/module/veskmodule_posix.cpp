#include "module/veskmodule.h"

#include <dlfcn.h>
#include <mutex>
#include <openssl/crypto.h>

namespace Braxel {
namespace VESK {

namespace {

// Before OpenSSL is started for the first time, or it clears itself away while the process ends
// and requests still run on their detached threads.
[[maybe_unused]] const int gOpenSslKept = OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);

std::mutex gPathMutex;

std::string& OwnPath() {
    static std::string& path = *new std::string;
    return path;
}

} // namespace

std::string VESKModule::Directory() {
    const std::lock_guard<std::mutex> lock(gPathMutex);
    std::string& path = OwnPath();
    Dl_info info = {};
    if (path.empty() && dladdr(reinterpret_cast<void*>(&OwnPath), &info) != 0 &&
        info.dli_fname != nullptr) {
        path = info.dli_fname;
    }
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
