#ifndef VESK_TESTS_SUPPORT_SYSTEM_H
#define VESK_TESTS_SUPPORT_SYSTEM_H

#include <cstddef>
#include <filesystem>

namespace vesk::test {

/// What this process holds at a moment.
struct ProcessCounts {
    size_t descriptors = 0; ///< on Windows: handles
    size_t threads = 0;
    size_t residentBytes = 0;
    size_t peakResidentBytes = 0; ///< since the start
};

ProcessCounts countProcess();
size_t countThreads();

/// How many threads, with a few descriptors each, the system may start for itself and keep.
extern const size_t kSystemThreads;

extern const char* const kSdkLibrary; ///< the SDK's file name
extern const bool kSdkUnloadsItself;  ///< whether UnInstall takes it out of the process

/// Loads a library; throws when it cannot be loaded.
void* openLibrary(const std::filesystem::path& file);
void closeLibrary(void* library);
bool isLibraryLoaded(const std::filesystem::path& file);
/// The function of this name; throws when there is none.
void (*findInLibrary(void* library, const char* name))();

} // namespace vesk::test

#endif
