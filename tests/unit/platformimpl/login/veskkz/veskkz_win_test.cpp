#include <objbase.h>

#include "platformimpl/login/veskkz/kzsink_win.h"
#include "thirdsdk/kz/comsupport.h"
#include "thirdsdk/kz/dllapihelper.h"
#include "unit/unittest.h"

namespace vesk::test {

namespace {

/// Beside the program lie the simulated KZ component and a steam_api64.dll, which is no COM server.
struct DllApiHelper : UnitTest {
    static HRESULT create(const std::filesystem::path& file, const char* classId, void** object) {
        return CreateObjectFromDllFile(file.wstring(), KZId(classId), IID_IUnknown, object);
    }

    static std::filesystem::path fileOf(HMODULE module) {
        wchar_t file[MAX_PATH] = {};
        GetModuleFileNameW(module, file, MAX_PATH);
        return file;
    }

    std::filesystem::path beside(const char* name) const {
        return (folder / name).make_preferred();
    }
};

// For the length of the case: each has a process of its own.
HMODULE load(const std::wstring& name) {
    return SSO_SafeCoLoadLibrary(name);
}

std::filesystem::path directoryFrom(UINT(WINAPI* call)(wchar_t*, UINT)) {
    wchar_t directory[MAX_PATH] = {};
    call(directory, MAX_PATH);
    return directory;
}

TEST_F(DllApiHelper, NameWithABackslashIsAPathAndNothingElseIsTried) {
    const auto file = beside("KZOpenSDK.dll");
    EXPECT_TRUE(equivalent(fileOf(load(file.wstring())), file));
    EXPECT_EQ(load(std::wstring(MAX_PATH, L'x') + L".dll"), nullptr) << "no path is that long";
    EXPECT_THAT(newMessages(), IsEmpty());
    EXPECT_EQ(load(L".\\KZOpenSDK-missing.dll"), nullptr);
    EXPECT_THAT(newMessages(), ElementsAre("CoLoadLibrary: .\\KZOpenSDK-missing.dll failed "
                                           "error(126)!"));
}

TEST_F(DllApiHelper, BareNameIsLookedForInTheSystemsFoldersAndBesideTheProgram) {
    std::filesystem::copy_file(folder / "KZOpenSDK.dll", folder / "version.dll");
    const HMODULE systems = load(L"version.dll");
    EXPECT_NE(GetProcAddress(systems, "GetFileVersionInfoW"), nullptr);
    EXPECT_EQ(GetProcAddress(systems, "DllGetClassObject"), nullptr);
    EXPECT_THAT(newMessages(), IsEmpty());

    EXPECT_TRUE(equivalent(fileOf(load(L"KZOpenSDK.dll")), beside("KZOpenSDK.dll")));
    EXPECT_EQ(newMessages().size(), 2u);

    EXPECT_EQ(load(L"missing.dll"), nullptr);
    std::vector<std::string> expected;
    for (const auto& directory :
         {directoryFrom(&GetSystemDirectoryW), directoryFrom(&GetWindowsDirectoryW), beside(".")}) {
        const auto file = (directory / "missing.dll").lexically_normal().make_preferred();
        expected.push_back("CoLoadLibrary: " + file.string() + " failed error(126)!");
    }
    EXPECT_EQ(newMessages(), expected);
}

TEST_F(DllApiHelper, BareNameIsNotFoundInTheWorkingDirectory) {
    ASSERT_FALSE(equivalent(std::filesystem::current_path(), folder));
    std::filesystem::copy_file(folder / "steam_api64.dll", "OnlyHere.dll");
    // The system's own search would find it there.
    const HMODULE found = LoadLibraryW(L"OnlyHere.dll");
    EXPECT_NE(found, nullptr);
    FreeLibrary(found);
    EXPECT_EQ(load(L"OnlyHere.dll"), nullptr);
    std::filesystem::remove("OnlyHere.dll");
}

TEST_F(DllApiHelper, EachWayToMissTheObjectIsLogged) {
    void* object = &object;
    EXPECT_EQ(create(beside("KZOpenSDK.dll"), VESK_KZ_CLSID_OPENSDK, nullptr), E_POINTER);
    EXPECT_TRUE(FAILED(create(beside("missing.dll"), VESK_KZ_CLSID_OPENSDK, &object)));
    EXPECT_EQ(object, nullptr);
    EXPECT_TRUE(FAILED(create(beside("steam_api64.dll"), VESK_KZ_CLSID_OPENSDK, &object)));
    EXPECT_EQ(create(beside("KZOpenSDK.dll"), VESK_KZ_IID_EVENTS, &object),
              CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_THAT(newMessages(),
                ElementsAre("CreateObjectFromDllFile: ppObject nullptr!",
                            AllOf(HasSubstr("missing.dll"), EndsWith(" failed error(126)!")),
                            "CreateObjectFromDllFile: Load Library failed!",
                            "CreateObjectFromDllFile: DllGetClassObject failed!",
                            "CreateObjectFromDllFile: IID_IClassFactory failed!"));
}

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
        {arg(VT_I4 | VT_BYREF, &three), arg(VT_UNKNOWN | VT_BYREF, &properties), S_OK,
         "3 with a bag"},
        {reference, arg(VT_VARIANT | VT_BYREF, &result), S_OK, "3 with a bag"},
        {arg(VT_INT, -1), arg(VT_NULL), S_OK, "-1"},
        {good, arg(VT_UNKNOWN), S_OK, "3"},
        {good, arg(VT_ERROR, DISP_E_PARAMNOTFOUND), S_OK, "3"},
        {arg(VT_UI4, 0xFFFFFFFF), result, DISP_E_OVERFLOW, "argument 1"},
        {arg(VT_EMPTY), result, DISP_E_TYPEMISMATCH, "argument 1"},
        {arg(0xFFFF, -1), result, DISP_E_TYPEMISMATCH, "argument 1"},
        {arg(VT_I4 | VT_BYREF), result, DISP_E_TYPEMISMATCH, "argument 1"},
        {arg(VT_VARIANT | VT_BYREF), result, DISP_E_TYPEMISMATCH, "argument 1"},
        {arg(VT_VARIANT | VT_BYREF, &reference), result, DISP_E_TYPEMISMATCH, "argument 1"},
        {good, arg(VT_I4, 3), DISP_E_TYPEMISMATCH, "argument 0"},
        {good, arg(VT_UNKNOWN, other), DISP_E_TYPEMISMATCH, "argument 0"},
        {good, arg(VT_UNKNOWN | VT_BYREF), DISP_E_TYPEMISMATCH, "argument 0"},
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
         {DISPPARAMS{arguments, nullptr, 1, 0}, DISPPARAMS{nullptr, nullptr, 2, 0}}) {
        EXPECT_EQ(invoke(&wrongCount), DISP_E_BADPARAMCOUNT);
    }
    DISPPARAMS withName = {arguments, &named, 2, 1};
    EXPECT_EQ(invoke(&withName), DISP_E_NONAMEDARGS);
    EXPECT_EQ(heard, "nothing");
}

} // namespace

} // namespace vesk::test
