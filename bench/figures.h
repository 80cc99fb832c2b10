#ifndef VESK_BENCH_FIGURES_H
#define VESK_BENCH_FIGURES_H

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace vesk::bench {

/// What a figure has to keep to.
struct Goal {
    enum class Rule { atMost, atLeast, reported } rule;
    double limit;
};

constexpr Goal atMost(double limit) {
    return {Goal::Rule::atMost, limit};
}
constexpr Goal atLeast(double limit) {
    return {Goal::Rule::atLeast, limit};
}
constexpr Goal reported() {
    return {Goal::Rule::reported, 0};
}

/// What was measured in one unit, ours and that of what stands beside it.
struct Pair {
    double baseline;
    double measured;
};

/// Writes figures as lines of JSON, for scripts/bench to make its table of.
class Figures {
public:
    /// Throws when @p file cannot be written.
    explicit Figures(const char* file);
    ~Figures();
    Figures(const Figures&) = delete;
    Figures& operator=(const Figures&) = delete;

    /// A figure that is a ratio; @p goal is for it.
    void ratio(const char* name, const char* baselineName, const char* unit, const Pair& pair,
               const Goal& goal);
    /// A figure that stands for itself.
    void value(const char* name, const char* unit, double value, const Goal& goal);

private:
    std::FILE* mFile;
};

/// Nanoseconds since some start.
double nowNs();

/// The lower quartile: what a thing takes when the rest of the machine leaves it alone.
double undisturbed(std::vector<double> values);

/// Runs both in turns, after some turns that do not count, and takes the lower quartile of what
/// each returns. In turns, because what else the machine does comes and goes.
Pair takeTurns(int turns, const std::function<double()>& baseline,
               const std::function<double()>& measured);

} // namespace vesk::bench

#endif
