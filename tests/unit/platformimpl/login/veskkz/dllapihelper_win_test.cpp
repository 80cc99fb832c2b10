#include <objbase.h>

#include "platformimpl/login/veskkz/kzsink_win.h"
#include "thirdsdk/kz/comsupport.h"
#include "thirdsdk/kz/dllapihelper.h"
#include "unit/unittest.h"

namespace vesk::test {

namespace {

/// Beside the program lie the simulated KZ component and a steam_api64.dll, which is no COM server.
struct DllApiHelper : UnitTest {
    ~DllApiHelper() override {
        for (HMODULE module : modules) {
            CoFreeLibrary(module);
        }
    }

    /// Loads the file for the length of the case.
    HMODULE load(const std::wstring& name) {
        HMODULE module = SSO_SafeCoLoadLibrary(name);
        if (module != nullptr) {
            modules.push_back(module);
        }
        return module;
    }

    HRESULT create(const std::wstring& name, const char* classId, void** object) {
        HMODULE module = nullptr;
        const HRESULT result =
            CreateObjectFromDllFile(name, KZId(classId), IID_IUnknown, object, &module);
        if (module != nullptr) {
            modules.push_back(module);
        }
        return result;
    }

    static std::filesystem::path fileOf(HMODULE module) {
        wchar_t file[MAX_PATH] = {};
        GetModuleFileNameW(module, file, MAX_PATH);
        return file;
    }

    std::filesystem::path beside(const char* name) const {
        return (folder / name).make_preferred();
    }

    std::vector<HMODULE> modules;
};

std::filesystem::path directoryFrom(UINT(WINAPI* call)(wchar_t*, UINT)) {
    wchar_t directory[MAX_PATH] = {};
    call(directory, MAX_PATH);
    return directory;
}

TEST_F(DllApiHelper, NameWithABackslashIsAPathAndNothingElseIsTried) {
    const auto file = beside("KZOpenSDK.dll");
    const HMODULE module = load(file.wstring());
    ASSERT_NE(module, nullptr);
    EXPECT_TRUE(equivalent(fileOf(module), file));
    EXPECT_THAT(logLines(), IsEmpty());

    EXPECT_EQ(load(L".\\KZOpenSDK-missing.dll"), nullptr);
    EXPECT_THAT(newMessages(), ElementsAre("CoLoadLibrary: .\\KZOpenSDK-missing.dll failed "
                                           "error(126)!"));
}

TEST_F(DllApiHelper, BareNameIsFoundBesideTheProgramAfterTheSystemsFolders) {
    const HMODULE module = load(L"KZOpenSDK.dll");
    ASSERT_NE(module, nullptr);
    EXPECT_TRUE(equivalent(fileOf(module), beside("KZOpenSDK.dll")));
    EXPECT_EQ(newMessages().size(), 2u);
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

TEST_F(DllApiHelper, SystemsFolderComesFirst) {
    std::filesystem::copy_file(folder / "KZOpenSDK.dll", folder / "version.dll");
    const HMODULE module = load(L"version.dll");
    ASSERT_NE(module, nullptr);
    EXPECT_NE(GetProcAddress(module, "GetFileVersionInfoW"), nullptr);
    EXPECT_EQ(GetProcAddress(module, "DllGetClassObject"), nullptr);
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(DllApiHelper, MissingNameIsLookedForInThreeFoldersInOrder) {
    EXPECT_EQ(load(L"missing.dll"), nullptr);
    std::vector<std::string> expected;
    for (const auto& directory :
         {directoryFrom(&GetSystemDirectoryW), directoryFrom(&GetWindowsDirectoryW), beside(".")}) {
        const auto file = (directory / "missing.dll").lexically_normal().make_preferred();
        expected.push_back("CoLoadLibrary: " + file.string() + " failed error(126)!");
    }
    EXPECT_EQ(newMessages(), expected);
}

TEST_F(DllApiHelper, NameThatMakesNoPathOfWindowsLengthIsNotTried) {
    EXPECT_EQ(load(std::wstring(MAX_PATH, L'x') + L".dll"), nullptr);
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(DllApiHelper, ObjectComesWithItsModuleAndBothCanBeGivenBack) {
    HMODULE module = nullptr;
    ComPtr<IKZOpenSDK> object;
    ASSERT_EQ(CreateObjectFromDllFile(beside("KZOpenSDK.dll").wstring(),
                                      KZId(VESK_KZ_CLSID_OPENSDK), KZId(VESK_KZ_IID_OPENSDK),
                                      reinterpret_cast<void**>(object.Receive()), &module),
              S_OK);
    EXPECT_TRUE(object);
    EXPECT_EQ(module, GetModuleHandleW(L"KZOpenSDK.dll"));
    object.Reset();
    CoFreeLibrary(module);
    EXPECT_EQ(GetModuleHandleW(L"KZOpenSDK.dll"), nullptr);
    EXPECT_THAT(read("kz_sim_calls.txt"), StartsWith("{\"objects\":0}\n"));
}

TEST_F(DllApiHelper, EachWayToMissTheObjectIsLogged) {
    void* object = &object;
    EXPECT_EQ(create(beside("KZOpenSDK.dll").wstring(), VESK_KZ_CLSID_OPENSDK, nullptr), E_POINTER);
    EXPECT_TRUE(FAILED(create(beside("missing.dll").wstring(), VESK_KZ_CLSID_OPENSDK, &object)));
    EXPECT_EQ(object, nullptr);
    EXPECT_TRUE(
        FAILED(create(beside("steam_api64.dll").wstring(), VESK_KZ_CLSID_OPENSDK, &object)));
    EXPECT_EQ(create(beside("KZOpenSDK.dll").wstring(), VESK_KZ_IID_EVENTS, &object),
              CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
    EXPECT_THAT(newMessages(),
                ElementsAre("CreateObjectFromDllFile: ppObject nullptr!",
                            AllOf(HasSubstr("missing.dll"), EndsWith(" failed error(126)!")),
                            "CreateObjectFromDllFile: Load Library failed!",
                            "CreateObjectFromDllFile: DllGetClassObject failed!",
                            "CreateObjectFromDllFile: IID_IClassFactory failed!"));
}

} // namespace
} // namespace vesk::test
