#ifndef VESK_MAINLOOP_VESKRESULTQUEUE_H
#define VESK_MAINLOOP_VESKRESULTQUEUE_H

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
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

/// The results that wait, oldest first, and the answers that are owed. Room for an answer is made
/// with its call, so that want of memory loses none later. Whoever has the queue guards it.
class VESKResultQueue {
public:
    /// Each by itself: they go from list to list, and the thread that takes one out copies nothing.
    using Results = std::list<std::unique_ptr<VESKResult>>;

    /// Answers of logouts beyond these are lost. Those of logins never are, and of other results
    /// there is no more than one.
    static constexpr size_t kMost = 4096;

    /// An answer that nobody outside has given.
    struct Refusal {
        int32_t code;
        const char* message;
        const std::string& channel; ///< the login's
        int32_t thirdCode = -1;
    };

    /// Makes room for the answer of the call @p request.
    static Results Room(int32_t kind, uint64_t request);
    /// From now on that answer is owed.
    void Owe(Results& room) noexcept;

    /// Gives the answer that is owed, if it still is. Without memory it has codes and no texts.
    /// @param isHeldBack it waits for Release() first @{
    void Answer(uint64_t request, const VESKLoginRet& ret, bool isHeldBack) noexcept;
    void Answer(uint64_t request, const VESKBaseRet& ret) noexcept;
    void Refuse(uint64_t request, const Refusal& why, bool isHeldBack = false) noexcept; ///@}
    void Release() noexcept;

    /// What answers no call of this mode. @{
    void PushUnasked(const VESKLoginRet& ret);
    void PushUnasked(const VESKBaseRet& ret); ///@}

    /// In the place of an older one that nobody has taken. @{
    void PushQrCode(uint64_t request, const VESKQrCodeRet& ret);
    void PushRefreshed(uint64_t request, const VESKLoginRet& ret); ///@}

    bool IsEmpty() const { return mResults.empty(); }
    /// Null when nothing waits.
    std::unique_ptr<VESKResult> Pop() noexcept;
    void Clear() noexcept;

private:
    void Send(Results::const_iterator owed, bool isHeldBack) noexcept;
    void Replace(Results newer) noexcept;

    Results mResults;
    Results mOwed;
    Results mHeldBack;
};

} // namespace VESK
} // namespace Braxel

#endif
