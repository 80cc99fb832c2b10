#ifndef VESK_BENCH_CHILD_H
#define VESK_BENCH_CHILD_H

#include <functional>

namespace vesk::bench {

/// Runs @p work in a process of its own, a copy of this one, and returns what it returns. Throws
/// when the child fails. To be called before this process has threads.
double inChild(const std::function<double()>& work);

} // namespace vesk::bench

#endif
