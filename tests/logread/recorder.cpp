// Linked into a copy of the library in place of VESKLogger::Write (ld's --wrap): keeps what is
// logged, in clear text and in full, before the product formats and scrambles it. The product's
// objects are the same as in the library that ships.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <vector>

#include "foundation/log/vesklogger.h"
#include "logread/recordedline.h"

using Braxel::VESK::VESKLogger;

namespace {

// Around the line as well, so that both files have one order.
Braxel::VESK::os::Mutex recorderMutex;

void keep(const vesk::test::RecordedLine& line) {
    const char* folder = std::getenv("VESK_TEST_FOLDER");
    if (folder == nullptr) {
        return;
    }
    if (std::FILE* file = std::fopen((std::string(folder) + "/recorded.bin").c_str(), "ab")) {
        const std::string bytes = line.toBytes();
        std::fwrite(bytes.data(), 1, bytes.size(), file);
        std::fclose(file);
    }
}

} // namespace

extern "C" {

void __real__ZN6Braxel4VESK10VESKLogger5WriteEiPKcS3_iS3_z(VESKLogger* self, int level,
                                                           const char* file, const char* method,
                                                           int line, const char* format, ...);

void __wrap__ZN6Braxel4VESK10VESKLogger5WriteEiPKcS3_iS3_z(VESKLogger* self, int level,
                                                           const char* file, const char* method,
                                                           int line, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int size = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    std::vector<char> message(size < 0 ? 1 : static_cast<size_t>(size) + 1);
    std::vsnprintf(message.data(), message.size(), format, arguments);
    va_end(arguments);

    const std::lock_guard<Braxel::VESK::os::Mutex> lock(recorderMutex);
    keep({"DIWE"[level & 3], file, method, line, message.data()});
    __real__ZN6Braxel4VESK10VESKLogger5WriteEiPKcS3_iS3_z(self, level, file, method, line, "%s",
                                                          message.data());
}
}
