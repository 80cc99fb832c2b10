#include "sinks.h"

#include <mutex>

namespace vesk::kzsim {

DWORD Sinks::add(const Sink& sink) {
    const std::lock_guard<Lock> guard(mLock);
    mSinks[++mLastCookie] = sink;
    return mLastCookie;
}

bool Sinks::remove(DWORD cookie) {
    Sink removed;
    const std::lock_guard<Lock> guard(mLock);
    const auto found = mSinks.find(cookie);
    if (found == mSinks.end()) {
        return false;
    }
    removed = found->second;
    mSinks.erase(found);
    return true;
}

bool Sinks::keep(DWORD cookie, bool forever) {
    const std::lock_guard<Lock> guard(mLock);
    const auto found = mSinks.find(cookie);
    if (found != mSinks.end() && forever) {
        new Sink(found->second);
    }
    return found != mSinks.end();
}

std::vector<Sinks::Sink> Sinks::all() const {
    const std::lock_guard<Lock> guard(mLock);
    std::vector<Sink> sinks;
    for (const auto& entry : mSinks) {
        sinks.push_back(entry.second);
    }
    return sinks;
}

} // namespace vesk::kzsim
