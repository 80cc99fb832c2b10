#ifndef VESK_TESTS_FAULTS_SYSTEMFAULTS_H
#define VESK_TESTS_FAULTS_SYSTEMFAULTS_H

#include <atomic>
#include <cstdint>
#include <thread>

namespace vesk::test {

/// A service of the system that is refused to the SDK, and to nobody else in the process.
class Refusal {
public:
    /// Refuses the call that comes as number @p nth from now, and those after it, @p times in all.
    void begin(long nth, long times = 1);
    /// @return how many calls have been refused since begin()
    long end();
    bool isOn() const { return mOn; }
    /// How many calls have come since begin().
    long calls() const { return mCalls; }
    /// Whether a call was refused on another thread than begin()'s.
    bool wasElsewhere() const { return mElsewhere; }
    /// A call has come. @return whether to refuse it
    bool take();

private:
    std::atomic<bool> mOn{false};
    std::atomic<long> mCalls{0};
    std::atomic<long> mNth{0};
    std::atomic<long> mTimes{0};
    std::atomic<bool> mElsewhere{false};
    std::thread::id mOwner;
};

/// The library's calls of these functions go through this program: the linker finds its ones first.
struct SystemFaults {
    SystemFaults();
    ~SystemFaults();

    /// Waits until no request is under way: what has not been heard by then never will be.
    static void waitForQuiet();

    inline static Refusal threads;     ///< pthread_create
    inline static Refusal curlHandles; ///< curl_easy_init
    inline static Refusal allocations; ///< malloc and its kin, by the SDK itself or for its strings
    /// The SDK's threads that do not just wait for a time.
    inline static std::atomic<int> busyThreads{0};
    /// By how many seconds the SDK's wall clock, and its timed waits, are ahead.
    inline static std::atomic<int64_t> clockAhead{0};
};

} // namespace vesk::test

#endif
