#ifndef VESK_BENCH_GROUPS_H
#define VESK_BENCH_GROUPS_H

#include "figures.h"

namespace vesk::bench {

/// What is measured in one process each.
void measureLogging(Figures& figures);
void measureJson(Figures& figures);
void measureQueue(Figures& figures);
void measureLogins(Figures& figures);
void measureRest(Figures& figures);
void measureManyLogins(Figures& figures);

} // namespace vesk::bench

#endif
