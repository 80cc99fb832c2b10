#ifndef VESK_CINTERFACE_VESKCRECORDS_H
#define VESK_CINTERFACE_VESKCRECORDS_H

#include <memory>
#include <variant>

#include "mainloop/veskresultqueue.h"
#include "vesk/vesk_c.h"
#include "vesk/vesk_mainloop.h"
#include "vesk/veskret.h"

namespace Braxel {
namespace VESK {

/// A login result that a caller of the plain C interface keeps: the record and the texts that it
/// points to.
struct VESKHeldLoginRet : vesk_login_ret {
    explicit VESKHeldLoginRet(const VESKLoginRet& ret);
    VESKHeldLoginRet(const VESKHeldLoginRet&) = delete;
    VESKHeldLoginRet& operator=(const VESKHeldLoginRet&) = delete;

private:
    const VESKLoginRet mRet;
};

/// The same for a result that waited.
struct VESKHeldResult : vesk_result {
    VESKHeldResult() : vesk_result() {}
    VESKHeldResult(const VESKHeldResult&) = delete;
    VESKHeldResult& operator=(const VESKHeldResult&) = delete;

    /// @return false when there is none.
    bool Hold(std::unique_ptr<VESKResult> result) noexcept;

private:
    std::unique_ptr<VESKResult> mResult;
    std::variant<vesk_login_ret, vesk_base_ret, vesk_qr_code_ret> mRecord;
};

/// The plain C form of a record. Its texts are those of @p ret.
vesk_base_ret ToC(const VESKBaseRet& ret);
vesk_login_ret ToC(const VESKLoginRet& ret);
vesk_qr_code_ret ToC(const VESKQrCodeRet& ret);

} // namespace VESK
} // namespace Braxel

#endif
