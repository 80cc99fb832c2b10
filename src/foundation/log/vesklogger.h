#ifndef VESK_FOUNDATION_LOG_VESKLOGGER_H
#define VESK_FOUNDATION_LOG_VESKLOGGER_H

#include <cstdarg>
#include <string>

#include "module/veskmutex.h"
#include "module/vesksingleton.h"
#include "platformimpl/foundation/os/compiler.h"

namespace Braxel {
namespace VESK {

/// Severity of a log line. Nothing is filtered by it.
enum VESKLogLevel : int {
    kLogDebug = 0,
    kLogInfo = 1,
    kLogWarning = 2,
    kLogError = 3,
};

/// Writes scrambled lines to veskrecord.log beside the library (docs/log-format.md).
///
/// A leaf of the whole library: it may be called with any lock held and calls nothing that logs.
/// Use the VESK_LOG_* macros.
class VESKLogger {
public:
    static VESKLogger* GetInstance() { return VESKSingleton<VESKLogger>::GetInstance(); }

    /// Writes one line. A file that cannot be written is silently passed over.
    /// @param fileName base name of the calling source file.
    /// @param methodName fully qualified.
    /// @param format printf-style; the message is cut at 40,959 bytes.
    void Write(int level, const char* fileName, const char* methodName, int line,
               const char* format, ...) noexcept VESK_PRINTF_FORMAT(6, 7);

    /// The line as the file holds it: every other byte XORed with the key, the last two bytes
    /// never, and cut at the first zero byte that comes out.
    static std::string Scramble(std::string line);

    /// The part of a compile-time path after its last separator of either kind, so that a line
    /// names the same file whichever compiler built it.
    static constexpr const char* BaseName(const char* path) {
        const char* base = path;
        for (const char* at = path; *at != '\0'; ++at) {
            if (*at == '\\' || *at == '/') {
                base = at + 1;
            }
        }
        return base;
    }

private:
    friend class VESKSingleton<VESKLogger>;
    VESKLogger();

    void AppendLine(std::string& text, int level, const char* fileName, const char* methodName,
                    int line, const char* format, va_list arguments) VESK_PRINTF_FORMAT(7, 0);

    std::string mPath;
    VESKMutex mMutex;
};

} // namespace VESK
} // namespace Braxel

/// One macro a level. `method` is the literal name below the namespace, "VESKLogin::Login"; the
/// line carries it in full.
#define VESK_LOG_AT(level, qualifiedMethod, ...)                                                   \
    ::Braxel::VESK::VESKLogger::GetInstance()->Write(                                              \
        level, ::Braxel::VESK::VESKLogger::BaseName(__FILE__), qualifiedMethod, __LINE__,          \
        __VA_ARGS__)
#define VESK_LOG_DEBUG(method, ...)                                                                \
    VESK_LOG_AT(::Braxel::VESK::kLogDebug, "Braxel::VESK::" method, __VA_ARGS__)
#define VESK_LOG_INFO(method, ...)                                                                 \
    VESK_LOG_AT(::Braxel::VESK::kLogInfo, "Braxel::VESK::" method, __VA_ARGS__)
#define VESK_LOG_ERROR(method, ...)                                                                \
    VESK_LOG_AT(::Braxel::VESK::kLogError, "Braxel::VESK::" method, __VA_ARGS__)

/// A line that names another file than the one it stands in. The file names in the log are fixed,
/// because people filter by them: code that moves takes the name of its old file along.
#define VESK_LOG_OF(file, level, method, ...)                                                      \
    ::Braxel::VESK::VESKLogger::GetInstance()->Write(level, file, "Braxel::VESK::" method,         \
                                                     __LINE__, __VA_ARGS__)

#endif
