#ifndef VESK_TESTS_FAULTS_PROCESSCOUNTS_H
#define VESK_TESTS_FAULTS_PROCESSCOUNTS_H

#include <cstddef>

namespace vesk::test {

/// What this process holds at a moment.
struct ProcessCounts {
    size_t descriptors = 0; ///< on Windows: handles
    size_t threads = 0;
    size_t residentBytes = 0;
    size_t peakResidentBytes = 0; ///< since the start
};

ProcessCounts countProcess();

/// How many threads, with a few descriptors each, the system may start for itself and keep.
extern const size_t kSystemThreads;

} // namespace vesk::test

#endif
