#ifndef VESK_FOUNDATION_LIFECYCLE_VESKTHREADLIST_H
#define VESK_FOUNDATION_LIFECYCLE_VESKTHREADLIST_H

#include <cstdint>

namespace Braxel {
namespace VESK {

/// The threads that are inside something, once for each time. An entry lies on its thread's stack:
/// it cannot be refused for want of memory, which a component that calls back could not be told.
/// Whoever has the list guards it.
class VESKThreadList {
public:
    class Entry {
    public:
        Entry() = default;
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;

    private:
        friend class VESKThreadList;
        uint64_t mThread = 0;
        Entry* mNext = nullptr;
    };

    /// The calling thread is inside until @p entry, which has to live so long, is removed.
    void Add(Entry& entry) noexcept;
    void Remove(Entry& entry) noexcept;

    bool IsEmpty() const noexcept { return mFirst == nullptr; }
    bool HasThisThread() const noexcept;
    bool HasAnotherThread() const noexcept;

private:
    Entry* mFirst = nullptr;
};

} // namespace VESK
} // namespace Braxel

#endif
