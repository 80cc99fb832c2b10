#ifndef VESK_FOUNDATION_HTTP_VESKTRUSTEDSTORE_H
#define VESK_FOUNDATION_HTTP_VESKTRUSTEDSTORE_H

#include <memory>

namespace Braxel {
namespace VESK {

/// The parsed form of a file of authorities, taken from a transfer that reads the file or lent to
/// one that need not. Where libcurl's TLS has no such thing (Schannel), there is none. Outlives the
/// CURL handle that it is lent to.
struct VESKTrustedStore {
    using Authorities = std::shared_ptr<void>;

    /// Before the transfer.
    /// @return whether the CURL handle has what is lent, and needs no file
    bool Lend(void* handle);

    Authorities lent; ///< null: the transfer reads its file
    Authorities read; ///< what it has read
};

} // namespace VESK
} // namespace Braxel

#endif
