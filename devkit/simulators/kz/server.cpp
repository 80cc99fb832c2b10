#include "server.h"

#include "call_log.h"

namespace vesk::kzsim {
namespace {

HMODULE myself(DWORD flags) {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | flags,
                       reinterpret_cast<LPCWSTR>(&myself), &module);
    return module;
}

} // namespace

std::wstring Server::besideMe(const wchar_t* fileName) {
    wchar_t own[MAX_PATH] = {};
    GetModuleFileNameW(myself(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT), own, MAX_PATH);
    const std::wstring path = own;
    return path.substr(0, path.rfind(L'\\') + 1) + fileName;
}

HMODULE Server::referenceMyself() {
    return myself(0);
}

LiveObject::~LiveObject() {
    if (--Server::sObjects == 0) {
        logObjects();
    }
}

} // namespace vesk::kzsim
