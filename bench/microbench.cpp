#include "microbench.h"

#include <benchmark/benchmark.h>
#include <map>
#include <stdexcept>

namespace vesk::bench {

namespace {

constexpr int kRepetitions = 31;
constexpr double kSecondsEach = 0.02;

/// Keeps what each repetition took and prints nothing.
class Repetitions : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& /*context*/) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                mTimes[run.run_name.function_name].push_back(run.GetAdjustedCPUTime());
            }
        }
    }

    double of(const std::string& name) const {
        const auto found = mTimes.find(name);
        if (found == mTimes.end()) {
            throw std::runtime_error("Google Benchmark has not run " + name);
        }
        return undisturbed(found->second);
    }

private:
    std::map<std::string, std::vector<double>> mTimes;
};

void add(const std::string& name, const std::function<void()>& work) {
    benchmark::RegisterBenchmark(name.c_str(),
                                 [work](benchmark::State& state) {
                                     for (auto _ : state) {
                                         work();
                                     }
                                 })
        ->Unit(benchmark::kNanosecond)
        ->MinTime(kSecondsEach)
        ->Repetitions(kRepetitions);
}

} // namespace

Pair microbench(const std::string& name, const std::function<void()>& baseline,
                const std::function<void()>& measured) {
    static const bool isReady = [] {
        std::string program = "vesk-bench";
        std::string interleaved = "--benchmark_enable_random_interleaving=true";
        char* arguments[] = {program.data(), interleaved.data()};
        int count = 2;
        benchmark::Initialize(&count, arguments);
        return true;
    }();
    static_cast<void>(isReady);
    add(name + ".baseline", baseline);
    add(name + ".measured", measured);
    Repetitions repetitions;
    benchmark::RunSpecifiedBenchmarks(&repetitions, "all");
    benchmark::ClearRegisteredBenchmarks();
    return {repetitions.of(name + ".baseline"), repetitions.of(name + ".measured")};
}

} // namespace vesk::bench
