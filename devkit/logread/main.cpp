#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <thread>

#include "loginstory.h"
#include "logreader.h"

namespace {

using namespace vesk::logread;

constexpr int kWrongUsage = 2;
constexpr size_t kPieceSize = 0x40000;
constexpr auto kPollInterval = std::chrono::milliseconds(100);

/// What the command line asks for.
struct LogOptions {
    std::string file;
    bool follow = false;
    bool json = false;
    bool redact = false;
    bool login = false;
    std::string level = "D";
    std::string sequenceId;
    std::string since;
};

std::string checkTime(const std::string& text) {
    std::string shape = text;
    std::replace_if(
        shape.begin(), shape.end(), [](char c) { return c >= '0' && c <= '9'; }, '0');
    const bool isRight = shape == "00:00" || shape == "00:00:00" || shape == "0000-00-00 00:00" ||
                         shape == "0000-00-00 00:00:00";
    return isRight ? std::string() : "neither \"YYYY-MM-DD HH:MM:SS\" nor \"HH:MM:SS\": " + text;
}

void defineOptions(CLI::App& app, LogOptions& options) {
    app.add_option("FILE", options.file, "the log")->required();
    auto* follow = app.add_flag("--follow", options.follow, "go on with what is written later");
    auto* level = app.add_option("--level", options.level, "that level and more severe ones")
                      ->check(CLI::IsMember({"D", "I", "W", "E"}));
    app.add_option("--seq", options.sequenceId, "only records that hold this sequence id");
    app.add_option("--since", options.since,
                   "only records from this time on: \"YYYY-MM-DD HH:MM[:SS]\", or \"HH:MM[:SS]\" "
                   "of the log's last day")
        ->check(CLI::Validator(checkTime, "TIME"));
    auto* json = app.add_flag("--json", options.json, "one JSON object a record");
    app.add_flag("--redact", options.redact, "mask credentials, so that the log can be passed on");
    app.add_flag("--login", options.login, "how each login went, why, and what to do about it")
        ->excludes(follow)
        ->excludes(level)
        ->excludes(json);
}

void writeOut(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() ||
        std::fflush(stdout) != 0) {
        throw std::runtime_error("cannot write the output");
    }
}

RecordFilter makeFilter(const LogOptions& options) {
    RecordFilter filter;
    filter.level = options.level[0];
    filter.since = options.since;
    if (!options.since.empty() && options.since.find('-') == std::string::npos) {
        filter.since.insert(0, lastDay(options.file) + " ");
    }
    // A login's story needs the components' records too, and those know no id.
    filter.sequenceId = options.login ? "" : options.sequenceId;
    return filter;
}

void readWhole(const std::string& path, LogReader& reader) {
    readLog(path, reader);
    if (reader.foreignBytes() != 0) {
        std::fprintf(stderr, "vesk-logread: %llu bytes belong to no record\n",
                     static_cast<unsigned long long>(reader.foreignBytes()));
    }
}

/// Collects what a format makes of records and writes it in large pieces.
struct Printer {
    const RecordFormat format;
    std::string out;

    void take(const LogRecord& record) {
        format(out, record);
        if (out.size() >= kPieceSize) {
            flush();
        }
    }

    void flush() {
        writeOut(out);
        out.clear();
    }
};

void follow(const std::string& path, LogReader& reader, Printer& printer) {
    LogFollower follower(path, reader);
    if (!follower.poll()) {
        std::fprintf(stderr, "vesk-logread: waiting for %s\n", path.c_str());
    }
    for (;;) {
        printer.flush();
        std::this_thread::sleep_for(kPollInterval);
        follower.poll();
    }
}

void run(const LogOptions& options) {
    if (options.login) {
        LoginStory story;
        LogReader reader([&](const LogRecord& record) { story.take(record); }, makeFilter(options),
                         true);
        readWhole(options.file, reader);
        writeOut(story.text(options.sequenceId));
        return;
    }
    Printer printer{options.json ? appendAsJson : appendAsText, {}};
    LogReader reader([&](const LogRecord& record) { printer.take(record); }, makeFilter(options),
                     options.redact);
    if (options.follow) {
        follow(options.file, reader, printer);
    } else {
        readWhole(options.file, reader);
        printer.flush();
    }
}

} // namespace

int main(int argc, char** argv) {
    try {
        LogOptions options;
        CLI::App app("Prints a veskrecord.log in clear text.", "vesk-logread");
        defineOptions(app, options);
        try {
            app.parse(argc, argv);
        } catch (const CLI::ParseError& error) {
            return app.exit(error) == 0 ? 0 : kWrongUsage;
        }
        run(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vesk-logread: %s\n", error.what());
        return 1;
    }
    return 0;
}
