#ifndef VESK_LOGIN_VESKRESULTSINK_H
#define VESK_LOGIN_VESKRESULTSINK_H

#include <atomic>
#include <string>

#include "vesk/veskret.h"

namespace Braxel {
namespace VESK {

/// Takes results before the game's observer does, and hears how logins go. Any thread calls it,
/// with no lock held. There is one at most, for as long as the library is there.
class VESKResultSink {
public:
    static VESKResultSink* Get() { return sSink; }
    static void Set(VESKResultSink* sink) { sSink = sink; }

    /// @param seqID as it is: the result is nobody else's any more, so nothing here may want for
    /// memory
    /// @return whether it was taken; else it is the observer's.
    virtual bool OnLogin(const VESKLoginRet& ret, const char* seqID) = 0;
    virtual bool OnBase(const VESKBaseRet& ret, const char* seqID) = 0;
    virtual bool OnQrCode(const VESKQrCodeRet& ret, const char* seqID) = 0;

    /// The login @p seqID is the current one; any other is superseded.
    static void LoginHasBegun(const std::string& seqID) {
        if (VESKResultSink* sink = Get()) {
            sink->OnLoginBegun(seqID);
        }
    }

    /// The backend has logged a player in. The last moment to withdraw the login.
    static void BeforeLoginIsStored() {
        if (VESKResultSink* sink = Get()) {
            sink->OnLoginAnswer();
        }
    }

    /// The held login has a fresh token, or has lost its own.
    static void TokenWasRefreshed() {
        if (VESKResultSink* sink = Get()) {
            sink->OnRefreshed();
        }
    }

    /// The channel has not taken the login or logout @p seqID, and says nothing of it.
    static void ChannelIsSilent(const std::string& seqID) {
        if (VESKResultSink* sink = Get()) {
            sink->OnSilence(seqID);
        }
    }

    /// There is no memory to tell the game how the login @p seqID has ended.
    static void LoginIsLost(const std::string& seqID) noexcept {
        if (VESKResultSink* sink = Get()) {
            sink->OnLost(seqID);
        }
    }

    /// UnInstall was called: nothing may be kept running or waiting.
    static void SdkEnds() {
        if (VESKResultSink* sink = Get()) {
            sink->OnEnd();
        }
    }

protected:
    ~VESKResultSink() = default;

private:
    virtual void OnLoginBegun(const std::string& seqID) = 0;
    virtual void OnLoginAnswer() = 0;
    virtual void OnRefreshed() = 0;
    virtual void OnSilence(const std::string& seqID) = 0;
    virtual void OnLost(const std::string& seqID) noexcept = 0;
    virtual void OnEnd() = 0;

    inline static std::atomic<VESKResultSink*> sSink{nullptr};
};

} // namespace VESK
} // namespace Braxel

#endif
