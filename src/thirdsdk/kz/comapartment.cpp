#include "thirdsdk/kz/comapartment.h"

#include <initializer_list>
#include <objbase.h>

namespace Braxel {
namespace VESK {

namespace {

/// A function of COM that older systems lack; null when it is not there.
template <typename Function>
Function Find(const char* name) {
    for (const wchar_t* file : {L"combase.dll", L"ole32.dll"}) {
        HMODULE module = GetModuleHandleW(file);
        FARPROC found = module == nullptr ? nullptr : GetProcAddress(module, name);
        if (found != nullptr) {
            return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(found));
        }
    }
    return nullptr;
}

} // namespace

// RPC_E_CHANGED_MODE is a failure: the thread has an apartment of its own, and nothing was taken.
ComApartment::ComApartment() : mJoined(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}

ComApartment::~ComApartment() {
    if (mJoined) {
        CoUninitialize();
    }
}

void ComKeeper::Keep() {
    const auto increment = Find<HRESULT(WINAPI*)(void**)>("CoIncrementMTAUsage");
    if (mUsage == nullptr && (increment == nullptr || FAILED(increment(&mUsage)))) {
        mUsage = nullptr;
    }
}

ComKeeper::~ComKeeper() {
    const auto decrement = Find<HRESULT(WINAPI*)(void*)>("CoDecrementMTAUsage");
    if (mUsage != nullptr && decrement != nullptr) {
        decrement(mUsage);
    }
}

} // namespace VESK
} // namespace Braxel
