#ifndef VESK_DEVKIT_LOGREAD_PRINTABLETEXT_H
#define VESK_DEVKIT_LOGREAD_PRINTABLETEXT_H

#include <string>
#include <string_view>

namespace vesk::logread {

/// Appends text with the bytes of its control characters as "\x1b", so that a log cannot steer the
/// terminal, nor show its text in another order. Line feeds and tabs stay; a carriage return before
/// a line feed is left out.
void appendPrintable(std::string& out, std::string_view text);

/// Appends text as a JSON string, with quotes. What is not UTF-8 becomes U+FFFD.
void appendJsonText(std::string& out, std::string_view text);

} // namespace vesk::logread

#endif
