#include "checks/query.h"

#include <algorithm>
#include <vector>

#include "server/jsontext.h"

namespace vesk::backend {

namespace {

struct Parameter {
    std::string_view name;
    std::string_view value;
    bool hasValue;
};

struct Field {
    const char* name;
    std::string Query::*value;
    bool optional;
};

constexpr Field kFields[] = {
    {"channelid", &Query::channelId, false},
    {"gameid", &Query::gameId, false},
    {"os", &Query::os, false},
    {"seq", &Query::seq, true},
    {"ts", &Query::ts, false},
    {"version", &Query::version, false},
    {"sig", &Query::sig, false},
};

std::vector<Parameter> split(std::string_view text) {
    std::vector<Parameter> parameters;
    while (true) {
        const size_t end = text.find('&');
        const std::string_view pair = text.substr(0, end);
        const size_t equals = pair.find('=');
        const bool hasValue = equals != std::string_view::npos;
        parameters.push_back({pair.substr(0, equals),
                              hasValue ? pair.substr(equals + 1) : std::string_view(), hasValue});
        if (end == std::string_view::npos) {
            return parameters;
        }
        text.remove_prefix(end + 1);
    }
}

std::string findRepeated(const std::vector<Parameter>& parameters) {
    for (auto later = parameters.begin(); later != parameters.end(); ++later) {
        const bool repeated = std::any_of(parameters.begin(), later, [&](const Parameter& earlier) {
            return earlier.name == later->name;
        });
        if (repeated) {
            return std::string(later->name);
        }
    }
    return {};
}

Problem shapeProblem(const std::string& msg) {
    return {Ret::QueryShape, "query: " + msg};
}

Problem misplaced(const std::vector<Parameter>& parameters, size_t index, const Field& expected) {
    std::string wanted = quoted(expected.name);
    if (index == 3 && std::string_view(expected.name) == "ts") {
        wanted = "'seq' or 'ts'";
    }
    if (index == parameters.size()) {
        return shapeProblem("ends after parameter " + std::to_string(index) + " where " + wanted +
                            " was expected");
    }
    return shapeProblem("parameter " + std::to_string(index + 1) + " is " +
                        quoted(parameters[index].name) + " where " + wanted + " was expected");
}

} // namespace

std::optional<Problem> readQuery(std::string_view text, Query& query) {
    if (text.empty()) {
        return shapeProblem("the request has none");
    }
    const std::vector<Parameter> parameters = split(text);
    const std::string repeated = findRepeated(parameters);
    if (!repeated.empty()) {
        return shapeProblem("parameter " + quoted(repeated) + " stands there more than once");
    }
    size_t index = 0;
    for (const Field& field : kFields) {
        const bool here = index < parameters.size() && parameters[index].name == field.name;
        if (!here && field.optional) {
            continue;
        }
        if (!here) {
            return misplaced(parameters, index, field);
        }
        if (!parameters[index].hasValue) {
            return shapeProblem("parameter " + quoted(field.name) + " has no '='");
        }
        if (field.optional && parameters[index].value.empty()) {
            return shapeProblem("parameter " + quoted(field.name) +
                                " is empty; an empty one is left out");
        }
        query.*field.value = parameters[index].value;
        ++index;
    }
    if (index < parameters.size()) {
        return shapeProblem("parameter " + quoted(parameters[index].name) +
                            " follows 'sig', which must be the last one");
    }
    return std::nullopt;
}

} // namespace vesk::backend
