#include "loggedlines.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

#include "foundation/log/vesklogger.h"
#include "support/files.h"

using Braxel::VESK::VESKLogger;

namespace vesk::bench {

LoggedLines::LoggedLines(const std::filesystem::path& file, const std::function<void()>& work,
                         const std::vector<std::string>& otherThreads) {
    // Emptied: reading a long log would take so long that others log meanwhile.
    std::filesystem::resize_file(file, 0);
    work();
    for (const std::string& text : test::readSdkLog(file)) {
        Line line = parse(text);
        const std::string method = line.method.substr(line.method.rfind("::") + 2);
        if (std::find(otherThreads.begin(), otherThreads.end(), method) == otherThreads.end()) {
            mLines.push_back(std::move(line));
        }
    }
    if (mLines.empty()) {
        throw std::runtime_error("nothing was logged");
    }
}

LoggedLines::Line LoggedLines::parse(const std::string& text) {
    // VESK [W.D][time][file,method,line]message
    const size_t file = text.find("][", text.find("][") + 1) + 2;
    const size_t method = text.find(',', file) + 1;
    const size_t number = text.find(',', method) + 1;
    const size_t message = text.find(']', number) + 1;
    return {static_cast<int>(std::string("DIWE").find(text.at(8))),
            text.substr(file, method - 1 - file),
            text.substr(method, number - 1 - method),
            std::atoi(text.c_str() + number),
            text.substr(message),
            text + "\n"};
}

void LoggedLines::logAgain() const {
    VESKLogger* logger = VESKLogger::GetInstance();
    for (const Line& line : mLines) {
        logger->Write(line.level, line.file.c_str(), line.method.c_str(), line.number, "%s",
                      line.message.c_str());
    }
}

void LoggedLines::appendPlainly(const std::string& path) const {
    for (const Line& line : mLines) {
        bench::appendPlainly(path, line.bytes);
    }
}

void appendPlainly(const std::string& path, const std::string& line) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    static_cast<void>(!write(file, line.data(), line.size()));
    close(file);
}

} // namespace vesk::bench
