#ifndef VESK_COMMON_VESKSINGLETON_H
#define VESK_COMMON_VESKSINGLETON_H

#include <atomic>
#include <mutex>

namespace Braxel {
namespace VESK {

/// The process-wide instance of T: created on first use, never destroyed, since detached threads
/// may outlive main. Creation is guarded by one mutex a type, so a constructor may reach other
/// singletons but never its own. It must not log: the logger is one of its users.
template <typename T>
class VESKSingleton {
public:
    static T* GetInstance() {
        T* instance = sInstance.load(std::memory_order_acquire);
        if (instance == nullptr) {
            const std::lock_guard<std::mutex> lock(sMutex);
            instance = sInstance.load(std::memory_order_relaxed);
            if (instance == nullptr) {
                instance = new T;
                sInstance.store(instance, std::memory_order_release);
            }
        }
        return instance;
    }

private:
    inline static std::atomic<T*> sInstance{nullptr};
    inline static std::mutex sMutex;
};

} // namespace VESK
} // namespace Braxel

#endif
