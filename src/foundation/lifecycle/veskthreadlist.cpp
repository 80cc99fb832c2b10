#include "foundation/lifecycle/veskthreadlist.h"

#include "platformimpl/foundation/os/thread.h"

namespace Braxel {
namespace VESK {

void VESKThreadList::Add(Entry& entry) noexcept {
    entry.mThread = os::CurrentThreadId();
    entry.mNext = mFirst;
    mFirst = &entry;
}

void VESKThreadList::Remove(Entry& entry) noexcept {
    for (Entry** link = &mFirst; *link != nullptr; link = &(*link)->mNext) {
        if (*link == &entry) {
            *link = entry.mNext;
            return;
        }
    }
}

bool VESKThreadList::HasThisThread() const noexcept {
    const Entry* entry = mFirst;
    while (entry != nullptr && entry->mThread != os::CurrentThreadId()) {
        entry = entry->mNext;
    }
    return entry != nullptr;
}

bool VESKThreadList::HasAnotherThread() const noexcept {
    const Entry* entry = mFirst;
    while (entry != nullptr && entry->mThread == os::CurrentThreadId()) {
        entry = entry->mNext;
    }
    return entry != nullptr;
}

} // namespace VESK
} // namespace Braxel
