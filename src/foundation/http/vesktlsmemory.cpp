#include "foundation/http/vesktlsmemory.h"

#include <curl/curl.h>
#include <mutex>
#include <utility>

#include "foundation/http/vesktransferbounds.h"
#include "module/veskmutex.h"
#include "module/vesksingleton.h"
#include "platformimpl/foundation/os/clock.h"
#include "platformimpl/foundation/os/file.h"

namespace Braxel {
namespace VESK {

/// What makes one request's memory good for another.
struct VESKTLSOrigin {
    std::string place;
    std::string certPath;
    os::FileStamp stamp;
    int64_t seconds; ///< of the wall clock
};

/// The memory itself; goes with the last request that uses it.
struct VESKTLSKept {
    explicit VESKTLSKept(VESKTLSOrigin from);
    ~VESKTLSKept() { curl_share_cleanup(share); }
    VESKTLSKept(const VESKTLSKept&) = delete;
    VESKTLSKept& operator=(const VESKTLSKept&) = delete;

    const VESKTLSOrigin origin;
    VESKTrustedStore::Authorities authorities; // guarded by the mutex of what is current
    VESKMutex shareMutex;
    VESKMutex sessionMutex;
    CURLSH* const share; // libcurl keeps eight sessions in it at most
};

namespace {

/// The server shows no certificate when a session is resumed. So this bounds for how long one is
/// trusted that has expired meanwhile.
constexpr int64_t kLifeSeconds = 3600;

struct Current {
    VESKMutex mutex; // guards all of it
    std::shared_ptr<VESKTLSKept> kept;
    bool hasEnded = false;
};

/// "https://host:port" of an address, as it is spelled; empty for one without TLS. libcurl takes
/// one and three slashes as well, which then are places of their own.
std::string PlaceOf(const std::string& url) {
    if (curl_strnequal(url.c_str(), "https:", 6) == 0) {
        return {};
    }
    return url.substr(0, url.find_first_of("/?#", url.find_first_not_of('/', 6)));
}

bool IsGoodFor(const VESKTLSOrigin& kept, const VESKTLSOrigin& now) {
    const int64_t age = now.seconds - kept.seconds;
    return kept.place == now.place && kept.certPath == now.certPath && kept.stamp == now.stamp &&
           age >= 0 && age < kLifeSeconds;
}

VESKMutex& MutexOf(curl_lock_data what, void* kept) {
    auto* memory = static_cast<VESKTLSKept*>(kept);
    return what == CURL_LOCK_DATA_SSL_SESSION ? memory->sessionMutex : memory->shareMutex;
}

void Lock(CURL* /*handle*/, curl_lock_data what, curl_lock_access /*access*/, void* kept) {
    MutexOf(what, kept).lock();
}

void Unlock(CURL* /*handle*/, curl_lock_data what, void* kept) {
    MutexOf(what, kept).unlock();
}

} // namespace

VESKTLSKept::VESKTLSKept(VESKTLSOrigin from) : origin(std::move(from)), share(curl_share_init()) {
    curl_share_setopt(share, CURLSHOPT_LOCKFUNC, &Lock);
    curl_share_setopt(share, CURLSHOPT_UNLOCKFUNC, &Unlock);
    curl_share_setopt(share, CURLSHOPT_USERDATA, this);
    curl_share_setopt(share, CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION);
}

VESKTLSMemory::VESKTLSMemory(const std::string& url, const std::string& certPath) {
    VESKTLSOrigin now{PlaceOf(url), certPath, os::StampOf(certPath), os::UnixSeconds()};
    // A proxy may be spoken to over TLS, too, and has authorities of its own.
    const bool mayKeep =
        !now.place.empty() && now.stamp.isSettled && !VESKTransferBounds::HasProxy();
    Current& current = *VESKSingleton<Current>::GetInstance();
    std::shared_ptr<VESKTLSKept> before; // ends without the lock
    const std::lock_guard<VESKMutex> lock(current.mutex);
    if (current.kept != nullptr && !(mayKeep && IsGoodFor(current.kept->origin, now))) {
        before.swap(current.kept);
    }
    if (mayKeep && !current.hasEnded) {
        if (current.kept == nullptr) {
            current.kept = std::make_shared<VESKTLSKept>(std::move(now));
        }
        mKept = current.kept;
        mStore.lent = mKept->authorities;
    }
}

VESKTLSMemory::~VESKTLSMemory() = default;

bool VESKTLSMemory::Lend(void* handle) {
    if (mKept == nullptr) {
        return false;
    }
    curl_easy_setopt(handle, CURLOPT_SHARE, mKept->share);
    return mStore.Lend(handle);
}

void VESKTLSMemory::Keep(bool isGood) {
    if (mKept == nullptr) {
        return;
    }
    // Whoever changed the file while it was read must find it read again.
    const bool isSame = os::StampOf(mKept->origin.certPath) == mKept->origin.stamp;
    Current& current = *VESKSingleton<Current>::GetInstance();
    std::shared_ptr<VESKTLSKept> before; // ends without the lock
    const std::lock_guard<VESKMutex> lock(current.mutex);
    if (isGood && isSame) {
        if (mKept->authorities == nullptr) {
            mKept->authorities = mStore.read;
        }
    } else if (current.kept == mKept) {
        // A server that chokes on what it is offered must not do so again.
        before.swap(current.kept);
    }
}

void VESKTLSMemory::End() {
    Current& current = *VESKSingleton<Current>::GetInstance();
    std::shared_ptr<VESKTLSKept> before; // ends without the lock
    const std::lock_guard<VESKMutex> lock(current.mutex);
    before.swap(current.kept);
    current.hasEnded = true;
}

} // namespace VESK
} // namespace Braxel
