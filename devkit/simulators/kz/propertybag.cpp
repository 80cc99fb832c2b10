#include "propertybag.h"

#include <algorithm>

namespace vesk::kzsim {

namespace {

// Only this library knows it: who answers it was made here.
const IID kOwnBag = {0x7a1d3c52, 0x94b0, 0x4e4f, {0x8c, 0x61, 0x2f, 0x60, 0xd5, 0xa7, 0xe9, 0x0f}};

std::wstring toWide(std::string_view utf8) {
    const int size = static_cast<int>(utf8.size());
    const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0);
    std::wstring wide(static_cast<size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), length);
    return wide;
}

} // namespace

std::string toUtf8(std::wstring_view wide) {
    const int length = static_cast<int>(wide.size());
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, utf8.data(), size, nullptr, nullptr);
    return utf8;
}

template <typename Type>
const Type* PropertyBag::find(const wchar_t* name, HRESULT& result) const {
    for (const auto& pair : mValues) {
        if (pair.first == name) {
            const Type* value = std::get_if<Type>(&pair.second);
            result = value == nullptr ? DISP_E_TYPEMISMATCH : S_OK;
            return value;
        }
    }
    result = DISP_E_UNKNOWNNAME;
    return nullptr;
}

PropertyBag::Pointer PropertyBag::make() {
    Pointer bag;
    *bag.Receive() = new PropertyBag;
    return bag;
}

PropertyBag::Pointer PropertyBag::from(IKZProperties* properties) {
    Pointer bag;
    if (properties != nullptr) {
        properties->QueryInterface(kOwnBag, reinterpret_cast<void**>(bag.Receive()));
    }
    return bag;
}

void PropertyBag::set(const char* name, LONG number) {
    put(toWide(name), number);
}

void PropertyBag::set(const char* name, const std::string& text) {
    put(toWide(name), toWide(text));
}

void PropertyBag::set(const char* name, List list) {
    put(toWide(name), std::move(list));
}

std::string PropertyBag::text(const wchar_t* name) const {
    HRESULT ignored = S_OK;
    const std::wstring* text = find<std::wstring>(name, ignored);
    return text == nullptr ? std::string() : toUtf8(*text);
}

void PropertyBag::writeTo(devkit::JsonLine& line) const {
    for (const auto& [name, value] : mValues) {
        if (const LONG* number = std::get_if<LONG>(&value)) {
            line.add(toUtf8(name), *number);
        } else if (const bool* flag = std::get_if<bool>(&value)) {
            line.add(toUtf8(name), *flag);
        } else if (const std::wstring* text = std::get_if<std::wstring>(&value)) {
            line.add(toUtf8(name), toUtf8(*text));
        }
    }
}

HRESULT PropertyBag::QueryInterface(REFIID id, void** object) {
    if (object != nullptr && id == kOwnBag) {
        *object = this;
        AddRef();
        return S_OK;
    }
    return ComObject::QueryInterface(id, object);
}

HRESULT PropertyBag::SetValue(const wchar_t* name, VARIANT value) {
    if (name == nullptr) {
        return E_POINTER;
    }
    switch (value.vt) {
    case VT_I4:
        put(name, value.lVal);
        return S_OK;
    case VT_BOOL:
        put(name, value.boolVal != VARIANT_FALSE);
        return S_OK;
    case VT_BSTR:
        put(name, std::wstring(value.bstrVal == nullptr ? L"" : value.bstrVal,
                               SysStringLen(value.bstrVal)));
        return S_OK;
    default:
        return DISP_E_BADVARTYPE;
    }
}

HRESULT PropertyBag::GetInt(const wchar_t* name, LONG* value) {
    if (name == nullptr || value == nullptr) {
        return E_POINTER;
    }
    HRESULT result = S_OK;
    const LONG* number = find<LONG>(name, result);
    *value = number == nullptr ? 0 : *number;
    return result;
}

HRESULT PropertyBag::GetText(const wchar_t* name, BSTR* value) {
    if (name == nullptr || value == nullptr) {
        return E_POINTER;
    }
    HRESULT result = S_OK;
    const std::wstring* text = find<std::wstring>(name, result);
    *value = text == nullptr ? nullptr
                             : SysAllocStringLen(text->data(), static_cast<UINT>(text->size()));
    return result;
}

HRESULT PropertyBag::GetListSize(const wchar_t* name, LONG* size) {
    if (name == nullptr || size == nullptr) {
        return E_POINTER;
    }
    HRESULT result = S_OK;
    const List* list = find<List>(name, result);
    *size = list == nullptr ? 0 : static_cast<LONG>(list->size());
    return result;
}

HRESULT PropertyBag::GetListEntry(const wchar_t* name, LONG index, IKZProperties** entry) {
    if (name == nullptr || entry == nullptr) {
        return E_POINTER;
    }
    *entry = nullptr;
    HRESULT result = S_OK;
    const List* list = find<List>(name, result);
    if (list == nullptr) {
        return result;
    }
    if (index < 0 || static_cast<size_t>(index) >= list->size()) {
        return DISP_E_BADINDEX;
    }
    PropertyBag* bag = (*list)[static_cast<size_t>(index)].Get();
    if (bag == nullptr) {
        return E_FAIL;
    }
    bag->AddRef();
    *entry = bag;
    return S_OK;
}

const IID& PropertyBag::InterfaceId() const {
    return mInterfaceId;
}

void PropertyBag::put(const std::wstring& name, Value value) {
    const auto found = std::find_if(mValues.begin(), mValues.end(),
                                    [&](const auto& pair) { return pair.first == name; });
    if (found == mValues.end()) {
        mValues.emplace_back(name, std::move(value));
    } else {
        found->second = std::move(value);
    }
}

} // namespace vesk::kzsim
