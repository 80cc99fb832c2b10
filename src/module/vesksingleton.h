#ifndef VESK_MODULE_VESKSINGLETON_H
#define VESK_MODULE_VESKSINGLETON_H

#include <atomic>
#include <mutex>
#include <new>

#include "module/veskmodule.h"
#include "module/veskmutex.h"

namespace Braxel {
namespace VESK {

/// Whether the memory of the process-wide T is given back when the library leaves the process.
template <typename T>
inline constexpr bool kReleasedAtUnload = true;

/// The process-wide instance of T: created on first use, never destroyed as long as the library is
/// there, since detached threads may outlive main. Creation is guarded by one mutex a type, so a
/// constructor may reach other singletons but never its own. It must not log: the logger is one of
/// its users.
template <typename T>
class VESKSingleton {
public:
    static T* GetInstance() {
        T* instance = sInstance.load(std::memory_order_acquire);
        if (instance == nullptr) {
            const std::lock_guard<VESKMutex> lock(sMutex);
            instance = sInstance.load(std::memory_order_relaxed);
            if (instance == nullptr) {
                instance = new T;
                sInstance.store(instance, std::memory_order_release);
                if constexpr (kReleasedAtUnload<T>) {
                    VESKModule::AtUnload(sRelease);
                }
            }
        }
        return instance;
    }

    /// The instance, or null as long as nobody has asked for one: for those who must not be the
    /// first.
    static T* Existing() { return sInstance.load(std::memory_order_acquire); }

private:
    static void Release() {
        // A T and nothing derived from it, whether its destructor is virtual or not.
        T* instance = sInstance.load();
        instance->T::~T();
        ::operator delete(instance);
    }

    inline static VESKModule::Release sRelease{&Release, nullptr};
    inline static std::atomic<T*> sInstance{nullptr};
    inline static VESKMutex sMutex;
};

} // namespace VESK
} // namespace Braxel

#endif
