#ifndef VESK_FOUNDATION_HTTP_VESKTLSMEMORY_H
#define VESK_FOUNDATION_HTTP_VESKTLSMEMORY_H

#include <memory>
#include <string>

#include "foundation/http/vesktrustedstore.h"

namespace Braxel {
namespace VESK {

struct VESKTLSKept;

/// What earlier requests have left to this one, and this one leaves to the next: the sessions of
/// their TLS connections, and the authorities in their parsed form. No connection is kept, no
/// cookie and no address. Made for each request, before its CURL handle, and outlives that.
///
/// There is one memory in the process. It begins anew with another scheme, host or port, with
/// another file of authorities and with each change of that file, after an hour, and after each
/// transfer that fails.
class VESKTLSMemory {
public:
    VESKTLSMemory(const std::string& url, const std::string& certPath);
    ~VESKTLSMemory();
    VESKTLSMemory(const VESKTLSMemory&) = delete;
    VESKTLSMemory& operator=(const VESKTLSMemory&) = delete;

    /// Before the transfer.
    /// @return whether the CURL handle has its authorities, and needs no file
    bool Lend(void* handle);

    /// After it. @param isGood whether nothing went wrong, trust included
    void Keep(bool isGood);

    /// Nothing is kept from now on. Requests under way give back what they still use.
    static void End();

private:
    std::shared_ptr<VESKTLSKept> mKept; ///< null when nothing may be kept
    VESKTrustedStore mStore;
};

} // namespace VESK
} // namespace Braxel

#endif
