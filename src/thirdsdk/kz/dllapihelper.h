#ifndef VESK_THIRDSDK_KZ_DLLAPIHELPER_H
#define VESK_THIRDSDK_KZ_DLLAPIHELPER_H

#include <windows.h>
#include <string>
#include <unknwn.h>

namespace Braxel {
namespace VESK {

/// Loads a COM server's file without any search path. A name with a backslash is a full path;
/// any other is looked for in the system's, Windows' and the program's own directory, in that
/// order.
/// @return null when it cannot be loaded. CoFreeLibrary() gives it back.
HMODULE SSO_SafeCoLoadLibrary(const std::wstring& fileName);

/// Makes an object of the class @p classId straight from its file, which need not be registered.
/// @param module when not null, receives the loaded file for CoFreeLibrary(), if there is one.
HRESULT CreateObjectFromDllFile(const std::wstring& path, REFCLSID classId, REFIID interfaceId,
                                void** object, HMODULE* module = nullptr);

} // namespace VESK
} // namespace Braxel

#endif
