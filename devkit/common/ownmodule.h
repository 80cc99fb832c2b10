#ifndef VESK_DEVKIT_COMMON_OWNMODULE_H
#define VESK_DEVKIT_COMMON_OWNMODULE_H

#include <filesystem>

namespace vesk::devkit {

/// The file of the library or program that holds an address of this process; empty when none does.
std::filesystem::path moduleOf(const void* address);

/// The folder of the library or program that this code was linked into, whatever the working
/// directory is.
std::filesystem::path ownFolder();

/// Keeps the library that this code was linked into in the process until that ends.
void stayLoaded();

} // namespace vesk::devkit

#endif
