#ifndef VESK_MODULE_VESKATLCOMMODULE_H
#define VESK_MODULE_VESKATLCOMMODULE_H

#include <atomic>
#include <objidl.h>
#include <vector>

namespace Braxel {
namespace VESK {

/// Receives the replacements for registry scripts.
class RegistryReplacements {
public:
    virtual HRESULT AddReplacement(const wchar_t* key, const wchar_t* item) = 0;

protected:
    ~RegistryReplacements() = default;
};

/// The library's COM module object. It offers no COM classes of its own: it counts locks, keeps
/// the global interface table and runs the termination callbacks when the library goes. Windows
/// only.
class CVESKATLComModule {
public:
    using TermFunction = void (*)(void* data);

    CVESKATLComModule() noexcept = default;
    CVESKATLComModule(const CVESKATLComModule&) = delete;
    CVESKATLComModule& operator=(const CVESKATLComModule&) = delete;

    /// Runs the termination callbacks in the order in which they were added.
    ~CVESKATLComModule();

    /// @return false when the module cannot be used; the library then refuses to load.
    bool Initialized() const noexcept { return true; }

    long Lock() noexcept { return ++mLockCount; }
    long Unlock() noexcept { return --mLockCount; }
    long GetLockCount() const noexcept { return mLockCount; }

    /// The process's global interface table, fetched on first use and kept.
    HRESULT GetGITPtr(IGlobalInterfaceTable** table);

    /// Adds the "APPID" replacement.
    HRESULT AddCommonRGSReplacements(RegistryReplacements& replacements) const;

    HRESULT AddTermFunc(TermFunction function, void* data);

private:
    struct TermEntry {
        TermFunction function;
        void* data;
    };

    std::atomic<long> mLockCount{0};
    std::atomic<IGlobalInterfaceTable*> mTable{nullptr};
    std::vector<TermEntry> mTermEntries;
};

} // namespace VESK
} // namespace Braxel

#endif
