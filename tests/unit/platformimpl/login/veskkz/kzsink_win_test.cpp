#include "platformimpl/login/veskkz/kzsink_win.h"

#include <objbase.h>

#include "thirdsdk/kz/dllapihelper.h"
#include "unit/unittest.h"

namespace vesk::test {

namespace {

/// A listener's sink, and a property bag of the simulated component that lies beside the program.
struct KZSink : UnitTest, KZOpenSDKCallback {
    KZSink() {
        *sink.Receive() = new CSink(this);
        ComPtr<IKZOpenSDK> object;
        CreateObjectFromDllFile((folder / "KZOpenSDK.dll").make_preferred().wstring(),
                                KZId(VESK_KZ_CLSID_OPENSDK), KZId(VESK_KZ_IID_OPENSDK),
                                reinterpret_cast<void**>(object.Receive()));
        object->CreateParameters(bag.Receive());
    }

    void OnKZOpenSDKCallback(int32_t type, const KZResult* result) override {
        heard = std::to_string(type) + (result == nullptr ? "" : " with a bag");
    }

    HRESULT invoke(DISPPARAMS* parameters, DISPID member = VESK_KZ_DISPID_NOTIFY,
                   WORD flags = DISPATCH_METHOD, REFIID reserved = IID_NULL) {
        heard = "nothing";
        wrong = 99;
        return sink->Invoke(member, reserved, 0, flags, parameters, nullptr, nullptr, &wrong);
    }

    ComPtr<CSink> sink;
    ComPtr<IKZProperties> bag;
    std::string heard;
    UINT wrong = 99;
};

VARIANT arg(int type, LONGLONG bits = 0) {
    VARIANT made = {};
    made.vt = static_cast<VARTYPE>(type);
    made.llVal = bits;
    return made;
}

VARIANT arg(int type, const void* pointer) {
    return arg(type, reinterpret_cast<LONGLONG>(pointer));
}

TEST_F(KZSink, DispatchedArgumentsAreReadOrRefused) {
    const LONG three = 3;
    IUnknown* const properties = bag.Get();
    IUnknown* const other = static_cast<IKZOpenSDKEvents*>(sink.Get());
    const VARIANT number = arg(VT_I2, 3);
    const VARIANT result = arg(VT_UNKNOWN, properties);
    const VARIANT reference = arg(VT_VARIANT | VT_BYREF, &number);
    const VARIANT good = arg(VT_I4, 3);
    const Rows<VARIANT, VARIANT, HRESULT, std::string> rows = {
        {good, result, S_OK, "3 with a bag"},
        {number, arg(VT_DISPATCH, properties), S_OK, "3 with a bag"},
        {arg(VT_I4 | VT_BYREF, &three), arg(VT_UNKNOWN | VT_BYREF, &properties), S_OK,
         "3 with a bag"},
        {reference, arg(VT_VARIANT | VT_BYREF, &result), S_OK, "3 with a bag"},
        {arg(VT_INT, -1), arg(VT_NULL), S_OK, "-1"},
        {arg(VT_UI1, 3), arg(VT_EMPTY), S_OK, "3"},
        {good, arg(VT_UNKNOWN), S_OK, "3"},
        {good, arg(VT_ERROR, DISP_E_PARAMNOTFOUND), S_OK, "3"},
        {arg(VT_UI4, 0xFFFFFFFF), result, DISP_E_OVERFLOW, "argument 1"},
        {arg(VT_EMPTY), result, DISP_E_TYPEMISMATCH, "argument 1"},
        {arg(VT_BSTR), result, DISP_E_TYPEMISMATCH, "argument 1"},
        {arg(VT_ARRAY | VT_I4), result, DISP_E_TYPEMISMATCH, "argument 1"},
        {arg(0xFFFF, -1), result, DISP_E_TYPEMISMATCH, "argument 1"},
        {arg(VT_I4 | VT_BYREF), result, DISP_E_TYPEMISMATCH, "argument 1"},
        {arg(VT_VARIANT | VT_BYREF), result, DISP_E_TYPEMISMATCH, "argument 1"},
        {arg(VT_VARIANT | VT_BYREF, &reference), result, DISP_E_TYPEMISMATCH, "argument 1"},
        {good, arg(VT_I4, 3), DISP_E_TYPEMISMATCH, "argument 0"},
        {good, arg(VT_ERROR, E_FAIL), DISP_E_TYPEMISMATCH, "argument 0"},
        {good, arg(VT_UNKNOWN, other), DISP_E_TYPEMISMATCH, "argument 0"},
        {good, arg(VT_UNKNOWN | VT_BYREF), DISP_E_TYPEMISMATCH, "argument 0"},
        {good, arg(VT_VARIANT | VT_BYREF), DISP_E_TYPEMISMATCH, "argument 0"},
    };
    for (const auto& [type, object, expected, outcome] : rows) {
        VARIANT arguments[] = {object, type};
        DISPPARAMS parameters = {arguments, nullptr, 2, 0};
        const HRESULT answer = invoke(&parameters);
        SCOPED_TRACE(outcome + ", VARIANTs " + std::to_string(type.vt) + " " +
                     std::to_string(object.vt));
        EXPECT_EQ(answer, expected);
        EXPECT_EQ(SUCCEEDED(answer) ? heard : "argument " + std::to_string(wrong), outcome);
        EXPECT_EQ(heard == "nothing", FAILED(answer));
    }
}

TEST_F(KZSink, OtherCallsThroughIDispatchAreRefused) {
    VARIANT arguments[] = {arg(VT_EMPTY), arg(VT_I4, 3), arg(VT_EMPTY)};
    DISPID named = 0;
    DISPPARAMS two = {arguments, nullptr, 2, 0};
    EXPECT_EQ(invoke(&two), S_OK);
    EXPECT_EQ(invoke(&two, 2), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(&two, 1, DISPATCH_PROPERTYGET), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(&two, 1, DISPATCH_METHOD, IID_IUnknown), DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(invoke(nullptr), E_POINTER);
    for (DISPPARAMS wrongCount :
         {DISPPARAMS{arguments, nullptr, 0, 0}, DISPPARAMS{arguments, nullptr, 1, 0},
          DISPPARAMS{arguments, nullptr, 3, 0}, DISPPARAMS{nullptr, nullptr, 2, 0}}) {
        EXPECT_EQ(invoke(&wrongCount), DISP_E_BADPARAMCOUNT);
    }
    DISPPARAMS withName = {arguments, &named, 2, 1};
    EXPECT_EQ(invoke(&withName), DISP_E_NONAMEDARGS);
    EXPECT_EQ(heard, "nothing");
}

TEST_F(KZSink, IsOneObjectBehindEachOfItsInterfaces) {
    ComPtr<IUnknown> self;
    ComPtr<IUnknown> found;
    const auto query = [this](REFIID id, ComPtr<IUnknown>& object) {
        return sink->QueryInterface(id, reinterpret_cast<void**>(object.Receive()));
    };
    ASSERT_EQ(query(IID_IUnknown, self), S_OK);
    for (const IID& id :
         {KZId(VESK_KZ_IID_EVENTS), KZId(VESK_KZ_IID_DISPEVENTS), IID_IDispatch, IID_IMarshal}) {
        ComPtr<IUnknown> identity;
        ASSERT_EQ(query(id, found), S_OK);
        found->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(identity.Receive()));
        EXPECT_EQ(identity.Get(), self.Get());
    }
    EXPECT_EQ(query(KZId(VESK_KZ_IID_PROPERTIES), found), E_NOINTERFACE);
    EXPECT_EQ(sink->QueryInterface(IID_IDispatch, nullptr), E_POINTER);
    OLECHAR name[] = L"onnotify";
    OLECHAR* names[] = {name};
    DISPID member = 0;
    EXPECT_EQ(sink->GetIDsOfNames(IID_NULL, names, 1, 0, &member), S_OK);
    EXPECT_EQ(member, VESK_KZ_DISPID_NOTIFY);
}

} // namespace
} // namespace vesk::test
