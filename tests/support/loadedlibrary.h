#ifndef VESK_TESTS_SUPPORT_LOADEDLIBRARY_H
#define VESK_TESTS_SUPPORT_LOADEDLIBRARY_H

#include <filesystem>

namespace vesk::test {

extern const char* const kSdkLibrary; ///< the SDK's file name
extern const bool kSdkUnloadsItself;  ///< whether UnInstall takes it out of the process

/// A library that this program has loaded at run time and never frees by itself.
class LoadedLibrary {
public:
    /// Throws when the library cannot be loaded.
    explicit LoadedLibrary(const std::filesystem::path& file);

    /// The function of this name in the type of @p Function. Throws when there is none.
    template <typename Function>
    Function* find(const char* name) const {
        return reinterpret_cast<Function*>(address(name));
    }

    bool isLoaded() const;
    /// Frees it once, as a program does that wants it no more. Nothing may be called in it then.
    void close() const;

private:
    using Address = void (*)();
    Address address(const char* name) const;

    std::filesystem::path mFile;
    void* mHandle;
};

} // namespace vesk::test

#endif
