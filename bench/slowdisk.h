#ifndef VESK_BENCH_SLOWDISK_H
#define VESK_BENCH_SLOWDISK_H

#include <chrono>

namespace vesk::bench {

/// From now on each open, write and close of a file by the SDK takes so long; 0: as long as it
/// takes.
void slowDisk(std::chrono::milliseconds each);

} // namespace vesk::bench

#endif
