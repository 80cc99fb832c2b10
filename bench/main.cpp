// usage: vesk-bench GROUP FILE
// Measures one group of figures and adds them to FILE; scripts/bench runs the groups, each in a
// folder and a process of its own.
#include <cstdio>
#include <exception>
#include <functional>
#include <map>
#include <string>

#include "groups.h"

int main(int argc, char** argv) {
    using namespace vesk::bench;
    const std::map<std::string, std::function<void(Figures&)>> groups = {
        {"logging", &measureLogging}, {"json", &measureJson}, {"queue", &measureQueue},
        {"logins", &measureLogins},   {"rest", &measureRest}, {"many", &measureManyLogins},
    };
    const auto group = groups.find(argc == 3 ? argv[1] : "");
    if (group == groups.end()) {
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
