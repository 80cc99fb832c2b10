#ifndef VESK_MODULE_VESKMODULE_H
#define VESK_MODULE_VESKMODULE_H

#include <atomic>
#include <string>

namespace Braxel {
namespace VESK {

/// What the library knows of its own file. Nothing here logs or touches any other part.
class VESKModule {
public:
    /// The mark by which the library's file and memory are known. Nothing reads it, so it is
    /// neither inline nor constexpr: the compiler would leave it out.
    static const char kTag[];

    /// The directory of the library's own file with its trailing separator, in the OEM code page
    /// on Windows and in the loader's own bytes on Linux. Empty when it is not known. It is the
    /// one of when the library was loaded: the working directory may change after that.
    static std::string Directory();

    /// Makes @p path the library's own file. For programs that have the sources compiled in and
    /// so have no library file whose folder could be taken. Call it before anything else.
    static void UsePath(const std::string& path);

    /// Starts a thread of the operating system that unloads this library once nobody is inside it
    /// any more, and returns at once. It gives back the reference that the game has taken, unless
    /// the game does so itself. Does nothing where the library stays loaded, nor a second time.
    static void StartUnload();

    /// From now on the library stays in the process, whoever unloads it.
    static void StayLoaded();

    /// Whether a thread that holds no reference on the module is inside the library.
    static bool InUse() { return sUses != 0; }

    /// What is to run when the library leaves the process; it lives as long as the library.
    struct Release {
        void (*function)();
        Release* next;
    };

    /// Runs @p release once nobody is inside the library any more, after UnInstall only, newest
    /// first. Never where the library stays loaded, and not when the process ends.
    static void AtUnload(Release& release);

    /// Marks the calling thread as being inside the library for as long as the object lives. For
    /// threads that hold no reference on the module: the game's and the channel components'.
    class Use {
    public:
        Use() noexcept { ++sUses; }
        ~Use() { --sUses; }
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;
    };

    /// A reference on the library's own module: it stays in the process for as long as the object
    /// lives. What drops the last one has to be on a thread that holds another, as ours do.
    class Reference {
    public:
        Reference() noexcept;
        ~Reference();
        Reference(const Reference&) = delete;
        Reference& operator=(const Reference&) = delete;

    private:
        void* const mModule;
    };

private:
    inline static std::atomic<int> sUses{0};
};

/// VESKModule::Directory(), found on first use and kept. As long as it cannot be found it is empty
/// and each call tries again. It writes no log line: the logger itself asks for it.
std::string LibraryDirectory();

} // namespace VESK
} // namespace Braxel

#endif
