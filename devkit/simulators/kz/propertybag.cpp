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

void PropertyBag::set(const std::string& name, Value value) {
    const auto found = std::find_if(mValues.begin(), mValues.end(),
                                    [&](const auto& pair) { return pair.first == name; });
    if (found == mValues.end()) {
        mValues.emplace_back(name, std::move(value));
    } else {
        found->second = std::move(value);
    }
}

const PropertyBag::Value* PropertyBag::find(const std::string& name) const {
    const auto found = std::find_if(mValues.begin(), mValues.end(),
                                    [&](const auto& pair) { return pair.first == name; });
    return found == mValues.end() ? nullptr : &found->second;
}

std::string PropertyBag::text(const std::string& name) const {
    const auto* text = std::get_if<std::string>(find(name));
    return text == nullptr ? std::string() : *text;
}

void PropertyBag::writeTo(devkit::JsonLine& line) const {
    for (const auto& [name, value] : mValues) {
        if (const auto* number = std::get_if<LONG>(&value)) {
            line.add(name, *number);
        } else if (const auto* flag = std::get_if<bool>(&value)) {
            line.add(name, *flag);
        } else if (const auto* text = std::get_if<std::string>(&value)) {
            line.add(name, *text);
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
        set(toUtf8(name), value.lVal);
        return S_OK;
    case VT_BOOL:
        set(toUtf8(name), value.boolVal != VARIANT_FALSE);
        return S_OK;
    case VT_BSTR:
        set(toUtf8(name), toUtf8({value.bstrVal, SysStringLen(value.bstrVal)}));
        return S_OK;
    default:
        return DISP_E_BADVARTYPE;
    }
}

template <typename Type, typename Out, typename Convert>
HRESULT PropertyBag::get(const wchar_t* name, Out* out, const Convert& convert) const {
    if (name == nullptr || out == nullptr) {
        return E_POINTER;
    }
    *out = {};
    const Value* value = find(toUtf8(name));
    if (value == nullptr) {
        return DISP_E_UNKNOWNNAME;
    }
    const auto* typed = std::get_if<Type>(value);
    if (typed == nullptr) {
        return DISP_E_TYPEMISMATCH;
    }
    *out = convert(*typed);
    return S_OK;
}

HRESULT PropertyBag::GetInt(const wchar_t* name, LONG* value) {
    return get<LONG>(name, value, [](LONG number) { return number; });
}

HRESULT PropertyBag::GetText(const wchar_t* name, BSTR* value) {
    return get<std::string>(name, value, [](const std::string& text) {
        const std::wstring wide = toWide(text);
        return SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    });
}

HRESULT PropertyBag::GetListSize(const wchar_t* name, LONG* size) {
    return get<List>(name, size, [](const List& list) { return static_cast<LONG>(list.size()); });
}

HRESULT PropertyBag::GetListEntry(const wchar_t* name, LONG index, IKZProperties** entry) {
    HRESULT result = S_OK;
    const HRESULT found = get<List>(name, entry, [&](const List& list) -> IKZProperties* {
        if (index < 0 || static_cast<size_t>(index) >= list.size()) {
            result = DISP_E_BADINDEX;
            return nullptr;
        }
        PropertyBag* bag = list[static_cast<size_t>(index)].Get();
        if (bag == nullptr) {
            result = E_FAIL;
        } else {
            bag->AddRef();
        }
        return bag;
    });
    return FAILED(found) ? found : result;
}

} // namespace vesk::kzsim
