#ifndef VESK_PLATFORMIMPL_FOUNDATION_OS_DYNAMICLIBRARY_H
#define VESK_PLATFORMIMPL_FOUNDATION_OS_DYNAMICLIBRARY_H

#include <string>

namespace Braxel {
namespace VESK {
namespace os {

/// A channel component, loaded at run time. It is not closed by itself: some components must stay
/// loaded until the process ends.
class DynamicLibrary {
public:
    /// Loads the file at @p fullPath, a path in the library directory's own encoding. Never
    /// searches any other place. On Linux the components keep their Windows file names.
    /// @return false when it cannot be loaded; the object is then as before.
    bool Open(const std::string& fullPath);

    bool IsOpen() const { return mHandle != nullptr; }

    /// The exported function @p name as a pointer to @p Function; null when there is none or
    /// nothing is loaded.
    template <typename Function>
    Function Find(const char* name) const {
        return reinterpret_cast<Function>(FindSymbol(name));
    }

    /// Unloads the component; does nothing when none is loaded, or it has done so before.
    /// @return false when it is in the process all the same: somebody else holds it, too.
    bool Close();

private:
    using AnyFunction = void (*)();
    AnyFunction FindSymbol(const char* name) const;

    void* mHandle = nullptr;
    std::string mPath;
};

} // namespace os
} // namespace VESK
} // namespace Braxel

#endif
