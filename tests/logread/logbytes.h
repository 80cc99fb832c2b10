#ifndef VESK_TESTS_LOGREAD_LOGBYTES_H
#define VESK_TESTS_LOGREAD_LOGBYTES_H

#include <string>
#include <vector>

#include "logreader.h"

namespace vesk::test {

/// A header of 64 characters, so that a message begins at an even index.
inline const std::string kHead = "VESK [W.D][2026-11-24 13:53:09.383][f.cpp,Braxel::VESK::X::f,76]";

/// A record's text as it lies in the file, with its line end.
std::string scrambled(std::string text);
/// A record of this method at this many milliseconds past 13:53.
std::string logLine(const std::string& method, int milliseconds, const std::string& message,
                    char level = 'D');
/// What Windows makes of bytes that are written in text mode.
std::string inTextMode(const std::string& bytes);

/// The records in clear text, one element each.
std::vector<std::string> readLog(const std::string& bytes, size_t piece = 4096,
                                 bool redact = false);
/// The log as one text, or one JSON object a line.
std::string printLog(const std::string& bytes, logread::RecordFormat format,
                     logread::RecordFilter filter = {}, bool redact = false, size_t piece = 4096);
/// The stories of the logins, without the times.
std::string tellLogins(const std::string& bytes);

} // namespace vesk::test

#endif
