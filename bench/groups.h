#ifndef VESK_BENCH_GROUPS_H
#define VESK_BENCH_GROUPS_H

#include <functional>
#include <map>
#include <string>

#include "figures.h"

namespace vesk::bench {

/// What is measured in one process; each source file adds its groups.
struct Group {
    Group(const char* name, std::function<void(Figures&)> measure) {
        all()[name] = std::move(measure);
    }

    static std::map<std::string, std::function<void(Figures&)>>& all() {
        static std::map<std::string, std::function<void(Figures&)>> groups;
        return groups;
    }
};

} // namespace vesk::bench

#endif
