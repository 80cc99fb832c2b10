// usage: vesk-bench-load FILE SDK LIBRARY
// How long the loader takes for the SDK and its first call, beside LIBRARY, which is as large and
// does nothing. A program of its own that links none of what the SDK needs; each load happens in a
// fresh process.
#include <cstdio>
#include <dlfcn.h>
#include <exception>
#include <stdexcept>

#include "child.h"
#include "figures.h"

namespace vesk::bench {

namespace {

constexpr int kLoads = 40;

double timeLoading(const char* library, const char* firstCall) {
    return inChild([&] {
        const double start = nowNs();
        void* handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
        void* call = handle == nullptr ? nullptr : dlsym(handle, firstCall);
        if (call == nullptr) {
            throw std::runtime_error(dlerror());
        }
        reinterpret_cast<void (*)(void*)>(call)(nullptr);
        return nowNs() - start;
    });
}

} // namespace

} // namespace vesk::bench

int main(int argc, char** argv) {
    using namespace vesk::bench;
    if (argc != 4) {
        std::fputs("usage: vesk-bench-load FILE SDK LIBRARY\n", stderr);
        return 2;
    }
    try {
        Figures figures(argv[1]);
        const Pair times = takeTurns(
            kLoads, [&] { return timeLoading(argv[3], "bench_nothing"); },
            [&] {
                return timeLoading(
                    argv[2],
                    "_ZN6Braxel4VESK9VESKLogin16SetLoginObserverEPNS0_17VESKLoginObserverE");
            });
        figures.ratio("loading the library and the first call",
                      "a library of that size that does nothing", "ns", times, reported());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vesk-bench-load: %s\n", error.what());
        return 1;
    }
    return 0;
}
