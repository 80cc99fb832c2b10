#ifndef VESK_FOUNDATION_TOOLS_MD5_H
#define VESK_FOUNDATION_TOOLS_MD5_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace Braxel {
namespace VESK {

/// The MD5 digest of RFC 1321. It signs requests because the backend expects it; it is no
/// protection for secrets.
class MD5 {
public:
    void Update(const void* data, size_t length);

    /// Ends the digest and gives it as 32 lower-case hexadecimal digits. Use the object no more.
    std::string Finalise();

    /// The digest of @p data in one call.
    static std::string Hex(const std::string& data);

private:
    void Transform(const uint8_t* block);

    uint32_t mState[4] = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    uint64_t mLength = 0;
    uint8_t mBlock[64] = {};
};

} // namespace VESK
} // namespace Braxel

#endif
