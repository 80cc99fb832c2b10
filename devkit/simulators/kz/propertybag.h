#ifndef VESK_DEVKIT_SIMULATORS_KZ_PROPERTYBAG_H
#define VESK_DEVKIT_SIMULATORS_KZ_PROPERTYBAG_H

#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "common/jsonline.h"
#include "comsupport.h"
#include "kzopensdk.h"
#include "server.h"

namespace vesk::kzsim {

std::string toUtf8(std::wstring_view wide);

/// Parameters of a request, or what an event brings. Keeps the order in which values were set.
class PropertyBag final : public Braxel::VESK::ComObject<IKZProperties> {
public:
    using Pointer = Braxel::VESK::ComPtr<PropertyBag>;
    /// An entry that is null is there, but cannot be read.
    using List = std::vector<Pointer>;

    static Pointer make();

    /// @p properties as one of ours, null when somebody else has made them.
    static Pointer from(IKZProperties* properties);

    /// Names and texts are UTF-8.
    void set(const char* name, LONG number);
    void set(const char* name, const std::string& text);
    void set(const char* name, List list);

    /// The text of that name; empty when there is none.
    std::string text(const wchar_t* name) const;

    /// Adds each value but lists under its name.
    void writeTo(devkit::JsonLine& line) const;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    HRESULT STDMETHODCALLTYPE SetValue(const wchar_t* name, VARIANT value) override;
    HRESULT STDMETHODCALLTYPE GetInt(const wchar_t* name, LONG* value) override;
    HRESULT STDMETHODCALLTYPE GetText(const wchar_t* name, BSTR* value) override;
    HRESULT STDMETHODCALLTYPE GetListSize(const wchar_t* name, LONG* size) override;
    HRESULT STDMETHODCALLTYPE GetListEntry(const wchar_t* name, LONG index,
                                           IKZProperties** entry) override;

protected:
    const IID& InterfaceId() const override;

private:
    using Value = std::variant<LONG, bool, std::wstring, List>;

    PropertyBag() = default;
    ~PropertyBag() override = default;

    void put(const std::wstring& name, Value value);

    /// The value in the type of @p Type; null when it is missing or of another type, and @p result
    /// then says which.
    template <typename Type>
    const Type* find(const wchar_t* name, HRESULT& result) const;

    const LiveObject mLive;
    const IID mInterfaceId = idOf(VESK_KZ_IID_PROPERTIES);
    std::vector<std::pair<std::wstring, Value>> mValues;
};

} // namespace vesk::kzsim

#endif
