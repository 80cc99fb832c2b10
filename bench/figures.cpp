#include "figures.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <stdexcept>

namespace vesk::bench {

namespace {

const char* ruleName(Goal::Rule rule) {
    switch (rule) {
    case Goal::Rule::atMost:
        return "at most";
    case Goal::Rule::atLeast:
        return "at least";
    default:
        return "reported";
    }
}

void writeLine(std::FILE* file, const char* name, const char* baselineName, const char* unit,
               const Pair* pair, double value, const Goal& goal) {
    const bool isHeld =
        goal.rule == Goal::Rule::atLeast ? value >= goal.limit : value <= goal.limit;
    rapidjson::StringBuffer text;
    rapidjson::Writer<rapidjson::StringBuffer> writer(text);
    writer.StartObject();
    writer.Key("figure");
    writer.String(name);
    if (pair != nullptr) {
        writer.Key("baseline_name");
        writer.String(baselineName);
        writer.Key("measured");
        writer.Double(pair->measured);
        writer.Key("baseline");
        writer.Double(pair->baseline);
    }
    writer.Key("unit");
    writer.String(unit);
    writer.Key("value");
    writer.Double(value);
    writer.Key("rule");
    writer.String(ruleName(goal.rule));
    if (goal.rule != Goal::Rule::reported) {
        writer.Key("goal");
        writer.Double(goal.limit);
        writer.Key("held");
        writer.Bool(isHeld);
    }
    writer.EndObject();
    std::fprintf(file, "%s\n", text.GetString());
    std::fflush(file);
}

} // namespace

Figures::Figures(const char* file) : mFile(std::fopen(file, "a")) {
    if (mFile == nullptr) {
        throw std::runtime_error(std::string("cannot write ") + file);
    }
}

Figures::~Figures() {
    std::fclose(mFile);
}

void Figures::ratio(const char* name, const char* baselineName, const char* unit, const Pair& pair,
                    const Goal& goal) {
    writeLine(mFile, name, baselineName, unit, &pair, pair.measured / pair.baseline, goal);
}

void Figures::value(const char* name, const char* unit, double value, const Goal& goal) {
    writeLine(mFile, name, "", unit, nullptr, value, goal);
}

double undisturbed(std::vector<double> values) {
    const auto quarter = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 4);
    std::nth_element(values.begin(), quarter, values.end());
    return *quarter;
}

double nowNs() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<double>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

Pair takeTurns(int turns, const std::function<double()>& baseline,
               const std::function<double()>& measured) {
    std::vector<double> baselines;
    std::vector<double> ours;
    if (const char* const fewer = std::getenv("VESK_BENCH_TURNS")) {
        turns = std::min(turns, std::atoi(fewer));
    }
    const int ignored = 2 + turns / 10;
    for (int turn = -ignored; turn < turns; ++turn) {
        const double first = baseline();
        const double second = measured();
        if (turn >= 0) {
            baselines.push_back(first);
            ours.push_back(second);
        }
    }
    return {undisturbed(baselines), undisturbed(ours)};
}

} // namespace vesk::bench
