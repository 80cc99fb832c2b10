#ifndef VESK_FOUNDATION_HTTP_VESKTRANSFERBOUNDS_H
#define VESK_FOUNDATION_HTTP_VESKTRANSFERBOUNDS_H

#include <cstddef>
#include <cstdint>

namespace Braxel {
namespace VESK {

/// Bounds what a peer can make libcurl take, where libcurl has no bound of its own: it keeps every
/// header, trailers and those of redirects included, for as long as the transfer lasts, and it
/// does not look at the time while it reads the body of a proxy's refusal.
class VESKTransferBounds {
public:
    /// For the transfer that follows on the CURL handle. Not to be moved until it has ended.
    void Begin(void* handle, long timeoutSeconds);

    /// Counts a header line.
    /// @return false when all lines of the transfer are more than a backend ever sends.
    bool CountHeader(size_t length);

    /// What the requester is told for a result of libcurl: a transfer that ended here has reached
    /// the bound of memory (23) or of time (28).
    int32_t Judge(int32_t result) const;

    /// Whether libcurl may find a proxy; for some hosts only, when there is a no_proxy.
    static bool HasProxy();

    /// For libcurl's progress callback.
    bool IsExceeded() const;

private:
    size_t mHeaderBytes = 0;
    uint32_t mStart = 0; // ticks
    uint64_t mMilliseconds = 0;
};

} // namespace VESK
} // namespace Braxel

#endif
