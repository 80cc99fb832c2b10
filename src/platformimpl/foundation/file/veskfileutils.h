#ifndef VESK_PLATFORMIMPL_FOUNDATION_FILE_VESKFILEUTILS_H
#define VESK_PLATFORMIMPL_FOUNDATION_FILE_VESKFILEUTILS_H

#include <cstddef>
#include <string>

#include "module/vesksingleton.h"

namespace Braxel {
namespace VESK {

/// Reads and writes files by name in the library's own directory, never anywhere else. While that
/// directory is not known every file counts as missing.
///
/// Files are opened in text mode. One that is longer than its limit counts as missing.
class VESKFileUtils {
public:
    static constexpr size_t kLongestFile = 1U << 20;
    static constexpr size_t kLongestConfigFile = 4U << 20;

    static VESKFileUtils* GetInstance() { return VESKSingleton<VESKFileUtils>::GetInstance(); }

    /// The library's directory with its trailing separator; empty while it is not known.
    std::string GetLibraryDirectory() const;

    /// The content of a file that the library wrote; empty when it cannot be read.
    std::string ReadFile(const std::string& name) const;

    /// The content of a file that ships with the library; empty when it cannot be read.
    std::string ReadConfigFile(const std::string& name) const;

    /// Replaces the file at one stroke: who reads it meanwhile, or after a kill, finds the old
    /// content or the new one.
    /// @return whether it was written; if not the old content stays.
    bool WriteFile(const std::string& name, const std::string& data) const;

    /// Removes the file; writes no log line.
    /// @return whether it was removed.
    bool RemoveFile(const std::string& name) const;

private:
    friend class VESKSingleton<VESKFileUtils>;
    VESKFileUtils() = default;
};

} // namespace VESK
} // namespace Braxel

#endif
