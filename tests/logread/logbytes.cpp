#include "logread/logbytes.h"

#include <cstdio>
#include <regex>

#include "loginstory.h"

namespace vesk::test {

using namespace logread;

std::string scrambled(std::string text) {
    for (size_t i = 0; i + 2 < text.size(); i += 2) {
        text[i] = static_cast<char>(text[i] ^ 0x3C);
    }
    return text.substr(0, text.find('\0')) + '\n';
}

std::string logLine(const std::string& method, int milliseconds, const std::string& message,
                    char level) {
    char time[16] = {};
    std::snprintf(time, sizeof time, "%02d.%03d", milliseconds / 1000, milliseconds % 1000);
    return scrambled(std::string("VESK [W.") + level + "][2026-11-24 13:53:" + time +
                     "][f.cpp,Braxel::VESK::" + method + ",76]" + message);
}

std::string inTextMode(const std::string& bytes) {
    return std::regex_replace(bytes, std::regex("\n"), "\r\n");
}

namespace {

void feed(LogReader& reader, std::string_view bytes, size_t piece) {
    for (size_t at = 0; at < bytes.size(); at += piece) {
        reader.feed(bytes.substr(at, piece));
    }
    reader.flush();
}

} // namespace

std::vector<std::string> readLog(const std::string& bytes, size_t piece, bool redact) {
    std::vector<std::string> lines;
    const auto take = [&lines](const LogRecord& record) {
        std::string text;
        appendAsText(text, record);
        lines.push_back(text.substr(0, text.size() - 1));
    };
    LogReader reader(take, RecordFilter(), redact);
    feed(reader, bytes, piece);
    return lines;
}

std::string printLog(const std::string& bytes, RecordFormat format, RecordFilter filter,
                     bool redact, size_t piece) {
    std::string out;
    LogReader reader([&](const LogRecord& record) { format(out, record); }, filter, redact);
    feed(reader, bytes, piece);
    return out;
}

std::string tellLogins(const std::string& bytes) {
    LoginStory story;
    LogReader reader([&](const LogRecord& record) { story.take(record); }, {}, true);
    feed(reader, bytes, 4096);
    return std::regex_replace(story.text(), std::regex(" +\\d+ ms +[+-]\\d+ ms +"), "");
}

} // namespace vesk::test
