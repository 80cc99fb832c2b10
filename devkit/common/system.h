#ifndef VESK_DEVKIT_COMMON_SYSTEM_H
#define VESK_DEVKIT_COMMON_SYSTEM_H

#include <filesystem>
#include <string>
#include <string_view>

namespace vesk::devkit {

// Neither of the two keeps anybody from writing, replacing or removing the file meanwhile.

/// The file's bytes; none when it cannot be read or is no regular file: opening a FIFO would wait.
std::string readFile(const std::filesystem::path& file);

/// Appends in one piece, to a new file when there is none.
void appendToFile(const std::filesystem::path& file, std::string_view bytes);

/// The file of the library or program that holds an address of this process; empty when none does.
std::filesystem::path moduleOf(const void* address);

/// The folder of the library or program that this code was linked into, whatever the working
/// directory is.
inline std::filesystem::path ownFolder() {
    return moduleOf(reinterpret_cast<const void*>(&ownFolder)).parent_path();
}

/// Keeps the library that this code was linked into in the process until that ends.
void stayLoaded();

} // namespace vesk::devkit

#endif
