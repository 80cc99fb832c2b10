#include "platformimpl/login/veskkz/kzcomponent.h"

#include <new>
#include <objbase.h>
#include <ocidl.h>
#include <olectl.h>

#include "platformimpl/foundation/os/text.h"
#include "platformimpl/login/veskkz/kzsink_win.h"
#include "thirdsdk/kz/comapartment.h"
#include "thirdsdk/kz/dllapihelper.h"

namespace Braxel {
namespace VESK {

namespace {

constexpr LONG kQrCodeSize = 200;

/// The component over COM. Its object is made without the registry and so has no apartment: it is
/// called directly on whatever thread there is, which is in COM during the call; events come
/// directly on the component's threads.
class KZComComponent : public KZComponent {
public:
    ~KZComComponent() override { KZComComponent::Unload(); }

    bool Create(const std::string& path) override {
        const ComApartment apartment;
        mKeeper.Keep();
        mPath = os::LocaleToWide(path);
        return !mPath.empty() &&
               SUCCEEDED(CreateObjectFromDllFile(
                   mPath, KZId(VESK_KZ_CLSID_OPENSDK), KZId(VESK_KZ_IID_OPENSDK),
                   reinterpret_cast<void**>(mObject.Receive()), &mModule)) &&
               mObject;
    }

    bool MakeSink(KZOpenSDKCallback* callback) override {
        *mSink.Receive() = new (std::nothrow) CSink(callback);
        return mSink && mSink->IsComplete();
    }

    int32_t Advise() override {
        const ComApartment apartment;
        ComPtr<IConnectionPointContainer> container;
        HRESULT result = mObject->QueryInterface(IID_IConnectionPointContainer,
                                                 reinterpret_cast<void**>(container.Receive()));
        if (SUCCEEDED(result) && !container) {
            result = E_NOINTERFACE;
        }
        if (SUCCEEDED(result)) {
            result = FindConnectionPoint(*container.Get());
        }
        if (SUCCEEDED(result)) {
            result = mPoint->Advise(static_cast<IKZOpenSDKEvents*>(mSink.Get()), &mCookie);
        }
        return static_cast<int32_t>(result);
    }

    bool Initialize(const std::string& appID, const std::string& appKey) override {
        const ComApartment apartment;
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
        const ComApartment apartment;
        // Not unless it was begun: the object may be one that others in the process use, too.
        const HRESULT result = mInitialized ? mObject->UnInitialize() : S_OK;
        if (mPoint && mCookie != 0) {
            mPoint->Unadvise(mCookie);
        }
        return SUCCEEDED(result);
    }

    bool Unload() override {
        const ComApartment apartment;
        mPoint.Reset();
        mObject.Reset();
        if (mModule != nullptr) {
            CoFreeLibrary(mModule);
            mModule = nullptr;
        }
        const bool gone = mPath.empty() || GetModuleHandleW(mPath.c_str()) == nullptr;
        if (gone) {
            mSink.Reset();
        }
        return gone;
    }

    std::string GetGenerateSerialNumber() override {
        const ComApartment apartment;
        ComPtr<IKZProperties> answer;
        if (FAILED(mObject->GetGenerateSerialNumber(answer.Receive())) || !answer) {
            return {};
        }
        return KZComResult(answer).GetText(L"result");
    }

    bool LoginByQRCode(const std::string& preCode) override {
        const ComApartment apartment;
        const ComPtr<IKZProperties> parameters = MakeParameters();
        // Saved, so that the player can be logged in again without a code.
        return parameters && Set(parameters, L"PreCode", preCode) &&
               SUCCEEDED(parameters->SetValue(L"Size", Variant(kQrCodeSize).Get())) &&
               SUCCEEDED(parameters->SetValue(L"bSaved", Variant(true).Get())) &&
               SUCCEEDED(mObject->LoginByQRCode(parameters.Get()));
    }

    int32_t GetLocalLoginList() override {
        const ComApartment apartment;
        return static_cast<int32_t>(mObject->GetLocalLoginList());
    }

    bool LoginByLocalLoginUser(const std::string& openid) override {
        const ComApartment apartment;
        const Bstr text(os::Utf8ToWide(openid));
        return SUCCEEDED(mObject->LoginByLocalLoginUser(text.Get()));
    }

    bool RefreshClientTempKey() override {
        const ComApartment apartment;
        return SUCCEEDED(mObject->RefreshClientTempKey());
    }

    void Logout() override {
        const ComApartment apartment;
        mObject->Logout();
    }

private:
    /// The events' own interface wins: it needs no packing of arguments.
    HRESULT FindConnectionPoint(IConnectionPointContainer& container) {
        const HRESULT own =
            container.FindConnectionPoint(KZId(VESK_KZ_IID_EVENTS), mPoint.Receive());
        if (SUCCEEDED(own) && mPoint) {
            return own;
        }
        const HRESULT dispatched =
            container.FindConnectionPoint(KZId(VESK_KZ_IID_DISPEVENTS), mPoint.Receive());
        return SUCCEEDED(dispatched) && !mPoint ? CONNECT_E_NOCONNECTION : dispatched;
    }

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

    ComKeeper mKeeper; // goes last
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
