#include <algorithm>
#include <iterator>
#include <memory>
// The order matters: the second needs the first.
#include <windows.h>
#include <wincrypt.h>

#include "common/system.h"
#include "connection.h"
#include "module.h"

namespace fs = std::filesystem;

namespace vesk::doctor {

const char* const kSdkLibrary = "VESKCore.dll";
const ModuleKind kSystem = ModuleKind::Windows64;

namespace {

using Context = std::unique_ptr<const CERT_CONTEXT, decltype(&CertFreeCertificateContext)>;

/// @param issuer CERT_NAME_ISSUER_FLAG, or 0 for the subject.
std::string textOf(const Context& certificate, DWORD issuer) {
    for (const char* kind : {szOID_COMMON_NAME, szOID_ORGANIZATION_NAME}) {
        wchar_t text[256] = {};
        const DWORD size = CertGetNameStringW(certificate.get(), CERT_NAME_ATTR_TYPE, issuer,
                                              const_cast<char*>(kind), text, 256);
        if (size > 1) {
            return std::filesystem::path(text).u8string(); // to UTF-8
        }
    }
    return "a certificate without a name";
}

int64_t secondsOf(const FILETIME& time) {
    constexpr int64_t kSecondsFrom1601To1970 = 11644473600;
    constexpr int64_t kTicksASecond = 10000000;
    const uint64_t ticks = uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
    return static_cast<int64_t>(ticks) / kTicksASecond - kSecondsFrom1601To1970;
}

LoadedSdk describe(HMODULE library) {
    LoadedSdk sdk;
    sdk.path = devkit::moduleOf(library); // a module's handle is its address
    const auto version = reinterpret_cast<const char* (*)()>(
        reinterpret_cast<void (*)()>(GetProcAddress(library, "vesk_version")));
    if (version != nullptr) {
        sdk.version = version();
    }
    return sdk;
}

} // namespace

std::optional<Certificate> readCertificate(const std::string& block) {
    std::string der(block.size(), '\0');
    DWORD size = static_cast<DWORD>(der.size());
    const bool decoded =
        CryptStringToBinaryA(block.data(), static_cast<DWORD>(block.size()),
                             CRYPT_STRING_BASE64HEADER, reinterpret_cast<BYTE*>(der.data()), &size,
                             nullptr, nullptr) != FALSE;
    const Context certificate(
        decoded ? CertCreateCertificateContext(X509_ASN_ENCODING,
                                               reinterpret_cast<const BYTE*>(der.data()), size)
                : nullptr,
        &CertFreeCertificateContext);
    if (!certificate) {
        return {};
    }
    const CERT_INFO& info = *certificate->pCertInfo;
    return Certificate{textOf(certificate, 0), textOf(certificate, CERT_NAME_ISSUER_FLAG),
                       secondsOf(info.NotBefore), secondsOf(info.NotAfter)};
}

std::optional<std::vector<std::string>> missingExports(const fs::path& file,
                                                       const std::vector<std::string>& names) {
    // Only mapped: neither it nor what it needs is started.
    HMODULE const library =
        LoadLibraryExW(fs::absolute(file).c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES);
    if (library == nullptr) {
        return std::nullopt;
    }
    std::vector<std::string> missing;
    std::copy_if(
        names.begin(), names.end(), std::back_inserter(missing),
        [&](const std::string& name) { return GetProcAddress(library, name.c_str()) == nullptr; });
    FreeLibrary(library);
    return missing;
}

LoadedSdk loadedSdk() {
    HMODULE const library = GetModuleHandleA(kSdkLibrary);
    return library == nullptr ? LoadedSdk() : describe(library);
}

LoadedSdk loadSdk(const fs::path& file) {
    // A missing import must not bring up a window.
    const UINT before = SetErrorMode(SEM_FAILCRITICALERRORS);
    HMODULE const library = LoadLibraryW(fs::absolute(file).c_str());
    const DWORD error = GetLastError();
    SetErrorMode(before);
    if (library == nullptr) {
        return {{}, {}, "Windows says error " + std::to_string(error)};
    }
    return describe(library);
}

} // namespace vesk::doctor
