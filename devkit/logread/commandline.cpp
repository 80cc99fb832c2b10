#include "commandline.h"

#include <CLI/CLI.hpp>

#include "timestamp.h"

namespace vesk::logread {

namespace {

constexpr int kUsageError = 2;

std::string checkTime(const std::string& text) {
    const bool isRight = isTime(text) || isTimeOfDay(text);
    return isRight ? std::string() : "neither \"YYYY-MM-DD HH:MM:SS\" nor \"HH:MM:SS\": " + text;
}

} // namespace

CommandLine readCommandLine(int argc, char** argv) {
    CommandLine options;
    CLI::App app("Prints a veskrecord.log in clear text.", "vesk-logread");
    app.add_option("FILE", options.file, "the log")->required();
    auto* follow = app.add_flag("--follow", options.follow, "go on with what is written later");
    auto* level = app.add_option("--level", options.level, "that level and the graver ones")
                      ->check(CLI::IsMember({"D", "I", "W", "E"}));
    app.add_option("--seq", options.sequenceId, "only records that hold this sequence id");
    app.add_option("--since", options.since,
                   "only records from this time on: \"YYYY-MM-DD HH:MM[:SS]\", or \"HH:MM[:SS]\" "
                   "of the log's last day")
        ->check(CLI::Validator(checkTime, "TIME"));
    auto* json = app.add_flag("--json", options.json, "one JSON object a record");
    app.add_flag("--redact", options.redact, "mask credentials, so that the log can be passed on");
    app.add_flag("--login", options.login, "only the story of each login, with the times between")
        ->excludes(follow)
        ->excludes(level)
        ->excludes(json);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        options.exitCode = app.exit(error) == 0 ? 0 : kUsageError;
    }
    return options;
}

} // namespace vesk::logread
