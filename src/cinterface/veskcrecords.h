#ifndef VESK_CINTERFACE_VESKCRECORDS_H
#define VESK_CINTERFACE_VESKCRECORDS_H

#include "vesk/vesk_c.h"
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

/// The plain C form of a record. Its texts are those of @p ret.
vesk_base_ret ToC(const VESKBaseRet& ret);
vesk_login_ret ToC(const VESKLoginRet& ret);
vesk_qr_code_ret ToC(const VESKQrCodeRet& ret);

} // namespace VESK
} // namespace Braxel

#endif
