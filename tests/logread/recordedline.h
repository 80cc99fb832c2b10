#ifndef VESK_TESTS_LOGREAD_RECORDEDLINE_H
#define VESK_TESTS_LOGREAD_RECORDEDLINE_H

#include <optional>
#include <string>
#include <string_view>

namespace vesk::test {

/// A line as the product was asked to log it.
struct RecordedLine {
    char level = 0;
    std::string file;
    std::string method;
    int line = 0;
    std::string message;

    std::string toBytes() const;
    /// Takes the next line from the front of @p bytes; nothing at their end.
    static std::optional<RecordedLine> takeFrom(std::string_view& bytes);

    /// What the log's format leaves of the message; nothing when a cut falls before its end.
    std::optional<std::string> messageInTheLog() const;
};

} // namespace vesk::test

#endif
