#ifndef VESK_BENCH_MICROBENCH_H
#define VESK_BENCH_MICROBENCH_H

#include <functional>
#include <string>

#include "figures.h"

namespace vesk::bench {

/// What a call of both takes in nanoseconds of the processor when undisturbed, by Google Benchmark:
/// its repetitions of the two come in random order.
Pair microbench(const std::string& name, const std::function<void()>& baseline,
                const std::function<void()>& measured);

} // namespace vesk::bench

#endif
