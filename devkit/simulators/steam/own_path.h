#ifndef VESK_SIMULATORS_STEAM_OWN_PATH_H
#define VESK_SIMULATORS_STEAM_OWN_PATH_H

#include <filesystem>

namespace vesk::steamsim {

/// The folder that holds this library file, whatever the process's working directory is.
std::filesystem::path ownFolder();

/// Keeps this library in the process until that ends.
void stayLoaded();

} // namespace vesk::steamsim

#endif
