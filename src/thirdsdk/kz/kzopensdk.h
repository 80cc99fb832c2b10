#ifndef VESK_THIRDSDK_KZ_KZOPENSDK_H
#define VESK_THIRDSDK_KZ_KZOPENSDK_H

#include <oaidl.h>

/// The contract of the KZ messenger's desktop component, KZOpenSDK.dll: an in-process COM server.
///
/// The ids come from the component's maker and belong to a version of the component; the ones here
/// are those of the simulator in the dev kit. Replace them when configuring:
///   cmake -DVESK_KZ_CLSID_OPENSDK={...} -DVESK_KZ_IID_OPENSDK={...} -DVESK_KZ_IID_PROPERTIES={...}
///         -DVESK_KZ_IID_EVENTS={...} -DVESK_KZ_IID_DISPEVENTS={...} -DVESK_KZ_DISPID_NOTIFY=...
/// The order of the methods is part of the contract; docs/kz-component.md tells the rest of it.
#ifndef VESK_KZ_CLSID_OPENSDK
#define VESK_KZ_CLSID_OPENSDK "{7A1D3C52-94B0-4E4F-8C61-2F60D5A7E901}"
#endif
#ifndef VESK_KZ_IID_OPENSDK
#define VESK_KZ_IID_OPENSDK "{7A1D3C52-94B0-4E4F-8C61-2F60D5A7E902}"
#endif
#ifndef VESK_KZ_IID_PROPERTIES
#define VESK_KZ_IID_PROPERTIES "{7A1D3C52-94B0-4E4F-8C61-2F60D5A7E903}"
#endif
#ifndef VESK_KZ_IID_EVENTS
#define VESK_KZ_IID_EVENTS "{7A1D3C52-94B0-4E4F-8C61-2F60D5A7E904}"
#endif
/// The events as a dispinterface. Its object looks different from one of IKZOpenSDKEvents, so its
/// id must be another one.
#ifndef VESK_KZ_IID_DISPEVENTS
#define VESK_KZ_IID_DISPEVENTS "{7A1D3C52-94B0-4E4F-8C61-2F60D5A7E905}"
#endif
/// The dispinterface's one method, OnNotify(notifyType, result).
#ifndef VESK_KZ_DISPID_NOTIFY
#define VESK_KZ_DISPID_NOTIFY 1
#endif

/// A property bag: parameters of a request, or what an event brings.
struct IKZProperties : public IUnknown {
    /// VT_I4, VT_BOOL or VT_BSTR.
    virtual HRESULT STDMETHODCALLTYPE SetValue(const wchar_t* name, VARIANT value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetInt(const wchar_t* name, LONG* value) = 0;
    /// The caller frees the text.
    virtual HRESULT STDMETHODCALLTYPE GetText(const wchar_t* name, BSTR* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetListSize(const wchar_t* name, LONG* size) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetListEntry(const wchar_t* name, LONG index,
                                                   IKZProperties** entry) = 0;
};

/// Implemented by the listener; called on any thread, during Advise included.
struct IKZOpenSDKEvents : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE OnNotify(LONG notifyType, IKZProperties* result) = 0;
};

/// The component's object. It is a connection point container as well, for IKZOpenSDKEvents or for
/// the dispinterface.
struct IKZOpenSDK : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE CreateParameters(IKZProperties** parameters) = 0;
    /// "AppId", "AppKey".
    virtual HRESULT STDMETHODCALLTYPE Initialize(IKZProperties* parameters) = 0;
    virtual HRESULT STDMETHODCALLTYPE UnInitialize() = 0;
    /// The answer's text is "result".
    virtual HRESULT STDMETHODCALLTYPE GetGenerateSerialNumber(IKZProperties** answer) = 0;
    /// "PreCode", "Size", "bSaved".
    virtual HRESULT STDMETHODCALLTYPE LoginByQRCode(IKZProperties* parameters) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetLocalLoginList() = 0;
    virtual HRESULT STDMETHODCALLTYPE LoginByLocalLoginUser(BSTR openid) = 0;
    virtual HRESULT STDMETHODCALLTYPE RefreshClientTempKey() = 0;
    virtual HRESULT STDMETHODCALLTYPE Logout() = 0;
};

#endif
