#ifndef VESK_COMMON_VESK_H
#define VESK_COMMON_VESK_H

#include <cstdint>
#include <string>

namespace Braxel {
namespace VESK {

/// The identity that accompanies every backend request. All of it may be called from any thread.
class VESK {
public:
    /// Makes sure that the game id and the device uuid are known.
    static void CheckSequenceKeys();

    /// A new sequence id, "<game id>-<uuid>-<Unix seconds>-<counter>".
    static std::string CreateSequenceId();

    /// The counter that follows @p counter: it wraps from 420,000,000 back to 1.
    static uint32_t NextSequence(uint32_t counter);

    /// The uuid of this process; empty when the system could not make one.
    static std::string GetUUID();

    /// What is known of the device, as a JSON object.
    static std::string GetDeviceInfo();
};

} // namespace VESK
} // namespace Braxel

#endif
