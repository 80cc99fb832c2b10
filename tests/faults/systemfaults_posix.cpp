#include "faults/systemfaults.h"

#include <cerrno>
#include <cstring>
#include <ctime>
#include <curl/curl.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <link.h>
#include <pthread.h>

#include "support/waituntil.h"

namespace vesk::test {

namespace {

/// The function that this program's one stands in for.
template <typename Function>
Function* real(Function* /*standIn*/, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// Whether the code at @p address is of the library with @p file in its name; "" is this program.
bool isOf(const char* file, void* address) {
    // dladdr goes through all names of the library as well: nine tenths of the cases' time.
    dl_find_object code = {};
    if (_dl_find_object(address, &code) != 0) {
        return false;
    }
    const char* const name = code.dlfo_link_map->l_name;
    return *file == '\0' ? *name == '\0' : std::strstr(name, file) != nullptr;
}

/// Whether it is the SDK that calls, by itself or for its strings.
bool isTheSdk() {
    thread_local bool asking = false;
    if (asking) {
        return false; // looking at the stack allocates, the first time
    }
    asking = true;
    void* frames[12];
    const int count = backtrace(frames, 12);
    int at = 0;
    // This function and the stand-in, then what allocates on behalf of its callers.
    for (const char* file : {"", "libstdc++"}) {
        while (at < count && isOf(file, frames[at])) {
            ++at;
        }
    }
    asking = false;
    return at < count && isOf("libVESKCore", frames[at]);
}

struct ThreadStart {
    void* (*routine)(void*);
    void* argument;
};

void* runThread(void* context) {
    const ThreadStart start = *static_cast<ThreadStart*>(context);
    delete static_cast<ThreadStart*>(context);
    void* const result = start.routine(start.argument);
    --SystemFaults::busyThreads;
    return result;
}

std::atomic<size_t> gSignals{0};

int readClock(clockid_t clock, timespec* time) {
    static const auto forward = real(&clock_gettime, "clock_gettime");
    return forward(clock, time);
}

bool refusesMemory() {
    return SystemFaults::allocations.isOn() && isTheSdk() && SystemFaults::allocations.take();
}

} // namespace

void Refusal::begin(long nth, long times) {
    mCalls = 0;
    mNth = nth;
    mTimes = times;
    mElsewhere = false;
    mOwner = std::this_thread::get_id();
    mOn = true;
}

long Refusal::end() {
    mOn = false;
    const long beyond = mCalls - (mNth - 1);
    return beyond < 0 ? 0 : beyond < mTimes ? beyond : mTimes.load();
}

bool Refusal::take() {
    const long beyond = mOn ? ++mCalls - mNth : -1;
    const bool refuse = beyond >= 0 && beyond < mTimes;
    if (refuse && std::this_thread::get_id() != mOwner) {
        mElsewhere = true;
    }
    return refuse;
}

SystemFaults::SystemFaults() {
    void* frame = nullptr;
    backtrace(&frame, 1);
}

void SystemFaults::waitForQuiet() {
    waitUntil("the requests to end", [] { return busyThreads == 0; });
}

SystemFaults::~SystemFaults() {
    clockAhead = 0;
    threads.end();
    curlHandles.end();
    allocations.end();
}

} // namespace vesk::test

using vesk::test::SystemFaults;

extern "C" {

// glibc's own names of what the functions below stand in for.
// NOLINTBEGIN(clang-diagnostic-reserved-identifier)
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);
// NOLINTEND(clang-diagnostic-reserved-identifier)

void* malloc(size_t size) {
    return vesk::test::refusesMemory() ? nullptr : __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
    return vesk::test::refusesMemory() ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* memory, size_t size) {
    return vesk::test::refusesMemory() ? nullptr : __libc_realloc(memory, size);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*routine)(void*),
                   void* argument) {
    static const auto forward = vesk::test::real(&pthread_create, "pthread_create");
    if (!vesk::test::isTheSdk()) {
        return forward(thread, attributes, routine, argument);
    }
    if (SystemFaults::threads.take()) {
        return EAGAIN;
    }
    ++SystemFaults::busyThreads;
    // NOLINTNEXTLINE(bugprone-unhandled-exception-at-new)
    auto* const start = new vesk::test::ThreadStart{routine, argument};
    return forward(thread, attributes, &vesk::test::runThread, start);
}

void* curl_easy_init() {
    static const auto forward = vesk::test::real(&curl_easy_init, "curl_easy_init");
    const bool refuse = vesk::test::isTheSdk() && SystemFaults::curlHandles.take();
    return refuse ? nullptr : forward();
}

int clock_gettime(clockid_t clock, timespec* time) {
    const int result = vesk::test::readClock(clock, time);
    if (clock == CLOCK_REALTIME && vesk::test::isTheSdk()) {
        time->tv_sec += SystemFaults::clockAhead;
    }
    return result;
}

int pthread_cond_signal(pthread_cond_t* condition) {
    static const auto forward = vesk::test::real(&pthread_cond_signal, "pthread_cond_signal");
    ++vesk::test::gSignals;
    return forward(condition);
}

// As when the system's clock is set: who waits for a time of day finds out at once.
int pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t* mutex,
                           const timespec* deadline) {
    static const auto forward = vesk::test::real(&pthread_cond_timedwait, "pthread_cond_timedwait");
    if (!vesk::test::isTheSdk()) {
        return forward(condition, mutex, deadline);
    }
    --SystemFaults::busyThreads;
    int result = ETIMEDOUT;
    // A signal may come just when a short wait below has timed out.
    const size_t before = vesk::test::gSignals;
    while (result == ETIMEDOUT && vesk::test::gSignals == before) {
        timespec now = {};
        vesk::test::readClock(CLOCK_REALTIME, &now);
        const time_t until = deadline->tv_sec - SystemFaults::clockAhead;
        if (now.tv_sec > until || (now.tv_sec == until && now.tv_nsec >= deadline->tv_nsec)) {
            break;
        }
        now.tv_nsec += 10000000;
        now.tv_sec += now.tv_nsec / 1000000000;
        now.tv_nsec %= 1000000000;
        result = forward(condition, mutex, &now);
    }
    ++SystemFaults::busyThreads;
    return result;
}

} // extern "C"
