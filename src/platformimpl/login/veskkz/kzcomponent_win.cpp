#include "platformimpl/login/veskkz/kzcomponent.h"

#include <new>
#include <objbase.h>
#include <ocidl.h>

#include "platformimpl/foundation/os/text.h"
#include "platformimpl/login/veskkz/kzsink_win.h"
#include "thirdsdk/kz/dllapihelper.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr LONG kQrCodeSize = 200;

/// The component over COM. Its calls need no apartment: events come directly on its own threads.
class KZComComponent : public KZComponent {
public:
    ~KZComComponent() override { KZComComponent::Unload(); }

    bool Create(const std::string& path) override {
        mPath = os::LocaleToWide(path);
        return !mPath.empty() &&
               SUCCEEDED(CreateObjectFromDllFile(
                   mPath, KZId(VESK_KZ_CLSID_OPENSDK), KZId(VESK_KZ_IID_OPENSDK),
                   reinterpret_cast<void**>(mObject.Receive()), &mModule)) &&
               mObject;
    }

    bool MakeSink(KZOpenSDKCallback* callback) override {
        *mSink.Receive() = new (std::nothrow) CSink(callback);
        return static_cast<bool>(mSink);
    }

    int32_t Advise() override {
        ComPtr<IConnectionPointContainer> container;
        HRESULT result = mObject->QueryInterface(IID_IConnectionPointContainer,
                                                 reinterpret_cast<void**>(container.Receive()));
        if (SUCCEEDED(result)) {
            result = container->FindConnectionPoint(KZId(VESK_KZ_IID_EVENTS), mPoint.Receive());
        }
        if (SUCCEEDED(result)) {
            result = mPoint->Advise(mSink.Get(), &mCookie);
        }
        return static_cast<int32_t>(result);
    }

    bool Initialize(const std::string& appID, const std::string& appKey) override {
        const ComPtr<IKZProperties> parameters = MakeParameters();
        mInitialized = parameters && Set(parameters, L"AppId", appID) &&
                       Set(parameters, L"AppKey", appKey) &&
                       SUCCEEDED(mObject->Initialize(parameters.Get()));
        return mInitialized;
    }

    bool ShutDown() override {
        if (!mObject || mShutDown.exchange(true)) {
            return false;
        }
        // Not unless it was begun: the object may be one that others in the process use, too.
        const HRESULT result = mInitialized ? mObject->UnInitialize() : S_OK;
        if (mPoint && mCookie != 0) {
            mPoint->Unadvise(mCookie);
        }
        return SUCCEEDED(result);
    }

    bool Unload() override {
        mPoint.Reset();
        mObject.Reset();
        bool gone = true;
        if (mModule != nullptr) {
            CoFreeLibrary(mModule);
            mModule = nullptr;
            gone = GetModuleHandleW(mPath.c_str()) == nullptr;
        }
        if (gone) {
            mSink.Reset();
        }
        return gone;
    }

    std::string GetGenerateSerialNumber() override {
        ComPtr<IKZProperties> answer;
        if (FAILED(mObject->GetGenerateSerialNumber(answer.Receive())) || !answer) {
            return {};
        }
        return KZComResult(answer).GetText(L"result");
    }

    bool LoginByQRCode(const std::string& preCode) override {
        const ComPtr<IKZProperties> parameters = MakeParameters();
        // Saved, so that the player can be logged in again without a code.
        return parameters && Set(parameters, L"PreCode", preCode) &&
               SUCCEEDED(parameters->SetValue(L"Size", Variant(kQrCodeSize).Get())) &&
               SUCCEEDED(parameters->SetValue(L"bSaved", Variant(true).Get())) &&
               SUCCEEDED(mObject->LoginByQRCode(parameters.Get()));
    }

    int32_t GetLocalLoginList() override {
        return static_cast<int32_t>(mObject->GetLocalLoginList());
    }

    bool LoginByLocalLoginUser(const std::string& openid) override {
        const Bstr text(os::Utf8ToWide(openid));
        return SUCCEEDED(mObject->LoginByLocalLoginUser(text.Get()));
    }

    bool RefreshClientTempKey() override { return SUCCEEDED(mObject->RefreshClientTempKey()); }

    void Logout() override { mObject->Logout(); }

private:
    ComPtr<IKZProperties> MakeParameters() {
        ComPtr<IKZProperties> parameters;
        if (FAILED(mObject->CreateParameters(parameters.Receive()))) {
            parameters.Reset();
        }
        return parameters;
    }

    static bool Set(const ComPtr<IKZProperties>& parameters, const wchar_t* name,
                    const std::string& text) {
        return SUCCEEDED(parameters->SetValue(name, Variant(os::Utf8ToWide(text)).Get()));
    }

    std::wstring mPath;
    HMODULE mModule = nullptr;
    ComPtr<IKZOpenSDK> mObject;
    ComPtr<IConnectionPoint> mPoint;
    ComPtr<CSink> mSink;
    DWORD mCookie = 0;
    std::atomic<bool> mInitialized{false};
    std::atomic<bool> mShutDown{false};
};

} // namespace

std::unique_ptr<KZComponent> MakeKZComponent() {
    return std::make_unique<KZComComponent>();
}

} // namespace VESK
} // namespace Braxel
