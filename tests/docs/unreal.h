#ifndef VESK_TESTS_DOCS_UNREAL_H
#define VESK_TESTS_DOCS_UNREAL_H

// What the pages use of Unreal Engine, written by us from its public documentation: enough for a
// compiler to see that our side is right. It says nothing of the engine itself.
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

using int32 = std::int32_t;

#define TEXT(literal) u##literal
#define UTF8_TO_TCHAR(text) FString(text)
#define UE_LOG(category, level, ...) LogTo(__VA_ARGS__)
#define IMPLEMENT_MODULE(type, name)                                                               \
    IModuleInterface* Make##name() {                                                               \
        return new type;                                                                           \
    }

struct FString {
    FString(const char16_t* text) : mText(text) {}
    explicit FString(const char* utf8) : mText(utf8, utf8 + std::string(utf8).size()) {}
    const char16_t* operator*() const { return mText.c_str(); }
    int32 Len() const { return static_cast<int32>(mText.size()); }
    std::u16string mText;
};

template <typename... Values>
void LogTo(const Values&...) {}

struct IModuleInterface {
    virtual ~IModuleInterface() = default;
    virtual void StartupModule() {}
    virtual void ShutdownModule() {}
};
IModuleInterface* MakeVeskLogin();

struct IPlugin {
    FString GetBaseDir() const { return TEXT("plugin"); }
};
struct IPluginManager {
    static IPluginManager& Get();
    std::shared_ptr<IPlugin> FindPlugin(const FString& name);
};
struct FPaths {
    static FString Combine(const FString& first, const FString& second);
};
struct FPlatformProcess {
    static void* GetDllHandle(const char16_t* path);
};
struct ENamedThreads {
    enum Type { GameThread };
};
template <typename Job>
void AsyncTask(ENamedThreads::Type, Job&& job) {
    std::forward<Job>(job)();
}
bool IsEngineExitRequested();

#endif
