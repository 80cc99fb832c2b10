// usage: vesk-bench GROUP FILE
// Measures one group of figures and adds them to FILE; scripts/bench runs the groups, each in a
// folder and a process of its own.
#include <cstdio>
#include <exception>

#include "groups.h"

int main(int argc, char** argv) {
    using namespace vesk::bench;
    const auto group = Group::all().find(argc == 3 ? argv[1] : "");
    if (group == Group::all().end()) {
        std::fputs("usage: vesk-bench GROUP FILE\n", stderr);
        return 2;
    }
    try {
        Figures figures(argv[2]);
        group->second(figures);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vesk-bench %s: %s\n", argv[1], error.what());
        return 1;
    }
    return 0;
}
