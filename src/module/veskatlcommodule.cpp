#include "module/veskatlcommodule.h"

#include <new>

namespace Braxel {
namespace VESK {

namespace {

const wchar_t kAppId[] = L"{6C0C4B5E-7B0E-4E0B-9C55-1B3E5C7A4D21}";

} // namespace

CVESKATLComModule::~CVESKATLComModule() {
    for (const TermEntry& entry : mTermEntries) {
        entry.function(entry.data);
    }
    // The table is not released: COM may be gone when the process ends.
}

HRESULT CVESKATLComModule::GetGITPtr(IGlobalInterfaceTable** table) {
    if (table == nullptr) {
        return E_POINTER;
    }
    if (mTable.load() == nullptr) {
        IGlobalInterfaceTable* made = nullptr;
        const HRESULT result =
            CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER,
                             IID_IGlobalInterfaceTable, reinterpret_cast<void**>(&made));
        if (FAILED(result)) {
            return result;
        }
        IGlobalInterfaceTable* expected = nullptr;
        if (!mTable.compare_exchange_strong(expected, made)) {
            made->Release();
        }
    }
    *table = mTable.load();
    return S_OK;
}

HRESULT CVESKATLComModule::AddCommonRGSReplacements(RegistryReplacements& replacements) const {
    return replacements.AddReplacement(L"APPID", kAppId);
}

HRESULT CVESKATLComModule::AddTermFunc(TermFunction function, void* data) {
    if (function == nullptr) {
        return E_INVALIDARG;
    }
    try {
        mTermEntries.push_back({function, data});
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
    return S_OK;
}

} // namespace VESK
} // namespace Braxel
