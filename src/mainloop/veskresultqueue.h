#ifndef VESK_MAINLOOP_VESKRESULTQUEUE_H
#define VESK_MAINLOOP_VESKRESULTQUEUE_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <variant>

#include "vesk/veskret.h"

namespace Braxel {
namespace VESK {

/// A result that waits for the game's main loop.
struct VESKResult {
    int32_t kind;     ///< VESK_RESULT_LOGIN and so on
    uint64_t request; ///< the number of the call that it answers; 0 when that has none
    std::variant<VESKLoginRet, VESKBaseRet, VESKQrCodeRet> ret;
};

/// A result that nobody outside has given.
template <typename Ret>
Ret MakeRet(int32_t methodNameID, int32_t code, const char* message) {
    Ret ret;
    ret.methodNameID = methodNameID;
    ret.retCode = code;
    ret.retMsg = message;
    return ret;
}

/// The results that wait, oldest first. Whoever has the queue guards it.
class VESKResultQueue {
public:
    /// Results of logouts beyond these are lost. Results of logins never are, and of the others
    /// there is no more than one.
    static constexpr size_t kMost = 4096;

    void PushLogin(uint64_t request, const VESKLoginRet& ret);
    void PushBase(uint64_t request, const VESKBaseRet& ret);
    /// In the place of an older one that nobody has taken. @{
    void PushQrCode(uint64_t request, const VESKQrCodeRet& ret);
    void PushRefreshed(uint64_t request, const VESKLoginRet& ret); ///@}

    /// The login of @p request has ended: nobody needs its QR code.
    void DropQrCode(uint64_t request);

    /// Null when nothing waits.
    std::unique_ptr<VESKResult> Pop();

    void Clear() { mResults.clear(); }

private:
    void Drop(int32_t kind);

    // Each by itself: the thread that takes one out copies nothing.
    std::deque<std::unique_ptr<VESKResult>> mResults;
};

} // namespace VESK
} // namespace Braxel

#endif
