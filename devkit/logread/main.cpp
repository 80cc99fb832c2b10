#include <chrono>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <thread>

#include "commandline.h"
#include "lasttime.h"
#include "logfile.h"
#include "logfollower.h"
#include "loginstory.h"
#include "recordprinter.h"
#include "timestamp.h"

namespace {

using namespace vesk::logread;

constexpr size_t kBufferSize = 0x100000;
constexpr auto kPollInterval = std::chrono::milliseconds(100);

void writeOut(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() ||
        std::fflush(stdout) != 0) {
        throw std::runtime_error("cannot write the output");
    }
}

RecordFilter makeFilter(const CommandLine& options) {
    RecordFilter filter;
    filter.setLevel(options.level[0]);
    const std::string day = isTimeOfDay(options.since) ? lastDay(options.file) + " " : "";
    filter.setSince(options.since.empty() ? "" : day + options.since);
    // A login's story needs the components' records too, and those know no id.
    filter.setSequenceId(options.login ? "" : options.sequenceId);
    return filter;
}

void readWhole(const std::string& path, LogReader& reader) {
    std::ifstream file = openLog(path);
    std::string buffer(kBufferSize, '\0');
    do {
        file.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
        reader.feed(std::string_view(buffer).substr(0, static_cast<size_t>(file.gcount())));
    } while (file);
    if (!file.eof()) {
        throw std::runtime_error("cannot read " + path);
    }
    reader.flush();
    if (reader.foreignBytes() != 0) {
        std::fprintf(stderr, "vesk-logread: %llu bytes belong to no record\n",
                     static_cast<unsigned long long>(reader.foreignBytes()));
    }
}

void follow(const std::string& path, LogReader& reader, RecordPrinter& printer) {
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

void run(const CommandLine& options) {
    if (options.login) {
        LoginStory story;
        LogReader reader(story, makeFilter(options), true);
        readWhole(options.file, reader);
        writeOut(story.text(options.sequenceId));
        return;
    }
    const TextFormat text;
    const JsonFormat json;
    const RecordFormat& format = options.json ? static_cast<const RecordFormat&>(json) : text;
    RecordPrinter printer(format, writeOut);
    LogReader reader(printer, makeFilter(options), options.redact);
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
        const CommandLine options = readCommandLine(argc, argv);
        if (options.exitCode >= 0) {
            return options.exitCode;
        }
        run(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vesk-logread: %s\n", error.what());
        return 1;
    }
    return 0;
}
