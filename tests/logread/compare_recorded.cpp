// usage: vesk_compare_recorded FOLDER
//
// Reads FOLDER/veskrecord.log with the log reader and compares each record, byte for byte, with
// what the product was asked to log (FOLDER/recorded.bin, see recorder.cpp).
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>

#include "logread/recordedline.h"
#include "logreader.h"
#include "support/files.h"

namespace {

using vesk::test::RecordedLine;

/// Takes the records of the log and looks each up in what was recorded.
class Comparison : public vesk::logread::RecordConsumer {
public:
    explicit Comparison(std::string_view recorded) : mRecorded(recorded) {}

    void take(const vesk::logread::LogRecord& record) override {
        const auto expected = RecordedLine::takeFrom(mRecorded);
        if (!expected) {
            throw std::runtime_error("the log holds more than was recorded");
        }
        const auto message = expected->messageInTheLog();
        if (!message) {
            ++mCut;
            return;
        }
        if (record.level != expected->level || record.file != expected->file ||
            record.method != expected->method || record.line != expected->line || record.cut ||
            record.message != *message) {
            throw std::runtime_error("record " + std::to_string(mSame + mCut + 1) +
                                     " differs\n  logged: " + expected->method + ": " + *message +
                                     "\n  read:   " + std::string(record.method) + ": " +
                                     std::string(record.message));
        }
        ++mSame;
    }

    /// The process may have ended between the recording of a line and its writing.
    void finish() {
        RecordedLine::takeFrom(mRecorded);
        if (!mRecorded.empty()) {
            throw std::runtime_error("lines are missing at the end of the log");
        }
        if (mSame < 5) {
            throw std::runtime_error("too few records to say anything");
        }
        std::printf("%d records are the same, %d were cut by the format\n", mSame, mCut);
    }

private:
    std::string_view mRecorded;
    int mSame = 0;
    int mCut = 0;
};

} // namespace

int main(int argc, char** argv) {
    try {
        const std::string folder = argc == 2 ? argv[1] : ".";
        const std::string recorded = vesk::test::readFile(folder + "/recorded.bin");
        Comparison comparison(recorded);
        vesk::logread::LogReader reader(comparison, {}, false);
        reader.feed(vesk::test::readFile(folder + "/veskrecord.log"));
        reader.flush();
        if (reader.foreignBytes() != 0) {
            throw std::runtime_error("bytes of the log belong to no record");
        }
        comparison.finish();
    } catch (const std::exception& error) {
        std::printf("%s\n", error.what());
        return 1;
    }
    return 0;
}
