#ifndef VESK_BENCH_LOGGEDLINES_H
#define VESK_BENCH_LOGGEDLINES_H

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace vesk::bench {

/// The log lines that something writes, to be written again without it.
class LoggedLines {
public:
    /// Empties the log @p file, runs @p work once and takes the lines that are there then; those of
    /// methods in @p otherThreads are left out. Throws when there are none.
    LoggedLines(const std::filesystem::path& file, const std::function<void()>& work,
                const std::vector<std::string>& otherThreads = {});

    /// The same lines through the SDK's logger.
    void logAgain() const;

    /// As many bytes into another file, line by line, by system calls alone.
    void appendPlainly(const std::string& path) const;

    size_t count() const { return mLines.size(); }

private:
    struct Line {
        int level;
        std::string file;
        std::string method;
        int number;
        std::string message;
        std::string bytes; ///< as the file has them
    };
    static Line parse(const std::string& text);

    std::vector<Line> mLines;
};

/// Opens the file, appends @p line and closes it, by system calls alone.
void appendPlainly(const std::string& path, const std::string& line);

} // namespace vesk::bench

#endif
