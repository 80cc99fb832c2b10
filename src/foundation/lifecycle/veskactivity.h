#ifndef VESK_FOUNDATION_LIFECYCLE_VESKACTIVITY_H
#define VESK_FOUNDATION_LIFECYCLE_VESKACTIVITY_H

#include <atomic>

namespace Braxel {
namespace VESK {

/// Something that is under way on the game's behalf, from its request to the end of its answer.
/// Whoever waits until the SDK is idle looks whether there is any. Of two that follow each other
/// the second begins before the first has ended.
class VESKActivity {
public:
    VESKActivity() noexcept { Begin(); }
    ~VESKActivity() { End(); }
    VESKActivity(const VESKActivity&) = delete;
    VESKActivity& operator=(const VESKActivity&) = delete;

    /// For what is no object: as many ends as beginnings.
    static void Begin() noexcept { ++sCount; }
    static void End() noexcept { --sCount; }

    static bool Any() noexcept { return sCount != 0; }

private:
    inline static std::atomic<int> sCount{0};
};

} // namespace VESK
} // namespace Braxel

#endif
