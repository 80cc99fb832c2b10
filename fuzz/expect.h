#ifndef VESK_FUZZ_EXPECT_H
#define VESK_FUZZ_EXPECT_H

#include <cstdio>
#include <cstdlib>

namespace vesk::fuzz {

/// Ends the process, which the fuzzer reports as a crash, unless the condition holds.
inline void expect(bool condition, const char* sentence) {
    if (!condition) {
        std::fprintf(stderr, "not so: %s\n", sentence);
        std::abort();
    }
}

} // namespace vesk::fuzz

#endif
