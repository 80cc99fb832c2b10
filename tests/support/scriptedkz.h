#ifndef VESK_TESTS_SUPPORT_SCRIPTEDKZ_H
#define VESK_TESTS_SUPPORT_SCRIPTEDKZ_H

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platformimpl/login/veskkz/kzcomponent.h"

namespace vesk::test {

/// The property bag of an event, written down.
struct Bag : Braxel::VESK::KZResult {
    std::map<std::wstring, int32_t> numbers;
    std::map<std::wstring, std::string> texts;
    int32_t listSize = -1;
    std::shared_ptr<Bag> entry; ///< what the list's first entry reads as; null cannot be read

    Bag() = default;
    Bag(std::map<std::wstring, int32_t> n, std::map<std::wstring, std::string> t)
        : numbers(std::move(n)), texts(std::move(t)) {}

    int32_t GetInt(const wchar_t* name, int32_t defValue) const override {
        const auto found = numbers.find(name);
        return found == numbers.end() ? defValue : found->second;
    }
    std::string GetText(const wchar_t* name) const override {
        const auto found = texts.find(name);
        return found == texts.end() ? std::string() : found->second;
    }
    int32_t GetListSize(const wchar_t*) const override { return listSize; }
    std::unique_ptr<KZResult> GetListEntry(const wchar_t*, int32_t) const override {
        return entry ? std::make_unique<Bag>(*entry) : nullptr;
    }
};

/// A KZ component in this process: answers as told, and sends events when it is told to.
struct ScriptedKZ : Braxel::VESK::KZComponent {
    /// What the case sees of the component that the wrapper owns.
    struct Script {
        bool creates = true;
        bool makesSink = true;
        int32_t advised = 0;
        bool initializes = true;
        bool takesLocalUser = true;
        std::function<void()> duringAdvise = [] {};
        std::vector<std::string> calls;
        std::atomic<Braxel::VESK::KZOpenSDKCallback*> callback{nullptr};
        std::atomic<int> alive{0};

        /// Sends an event as the component would; nobody hears it once it has been shut down.
        void send(int32_t type, const Braxel::VESK::KZResult* result) {
            if (auto* listener = callback.load()) {
                listener->OnKZOpenSDKCallback(type, result);
            }
        }
    };

    explicit ScriptedKZ(Script& s) : script(s) { ++script.alive; }
    ~ScriptedKZ() override { --script.alive; }

    bool Create(const std::string&) override { return script.creates; }
    bool MakeSink(Braxel::VESK::KZOpenSDKCallback* callback) override {
        sink = callback;
        return script.makesSink;
    }
    int32_t Advise() override {
        script.callback = sink;
        script.duringAdvise();
        return script.advised;
    }
    bool Initialize(const std::string& id, const std::string& key) override {
        script.calls.push_back("Initialize " + id + " " + key);
        return script.initializes;
    }
    bool ShutDown() override { return true; }
    bool Unload() override {
        script.callback = nullptr;
        return true;
    }
    std::string GetGenerateSerialNumber() override { return "SN-1"; }
    bool LoginByQRCode(const std::string& preCode) override {
        script.calls.push_back("LoginByQRCode " + preCode);
        return true;
    }
    int32_t GetLocalLoginList() override { return 0; }
    bool LoginByLocalLoginUser(const std::string& openid) override {
        script.calls.push_back("LoginByLocalLoginUser " + openid);
        return script.takesLocalUser;
    }
    bool RefreshClientTempKey() override { return true; }
    void Logout() override { script.calls.emplace_back("Logout"); }

    Script& script;
    Braxel::VESK::KZOpenSDKCallback* sink = nullptr;
};

} // namespace vesk::test

#endif
