#include "foundation/tools/md5.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace Braxel {
namespace VESK {

namespace {

constexpr size_t kBlockSize = 64;
constexpr size_t kLengthOffset = 56;

constexpr uint32_t kSines[64] = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

constexpr int kShifts[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

uint32_t RotateLeft(uint32_t value, int bits) {
    return (value << bits) | (value >> (32 - bits));
}

uint32_t LoadLittleEndian(const uint8_t* bytes) {
    return static_cast<uint32_t>(bytes[0]) | static_cast<uint32_t>(bytes[1]) << 8 |
           static_cast<uint32_t>(bytes[2]) << 16 | static_cast<uint32_t>(bytes[3]) << 24;
}

} // namespace

void MD5::Transform(const uint8_t* block) {
    uint32_t a = mState[0];
    uint32_t b = mState[1];
    uint32_t c = mState[2];
    uint32_t d = mState[3];
    for (uint32_t step = 0; step < 64; ++step) {
        uint32_t mixed = 0;
        uint32_t word = 0;
        switch (step / 16) {
        case 0:
            mixed = (b & c) | (~b & d);
            word = step;
            break;
        case 1:
            mixed = (d & b) | (~d & c);
            word = (5 * step + 1) % 16;
            break;
        case 2:
            mixed = b ^ c ^ d;
            word = (3 * step + 5) % 16;
            break;
        default:
            mixed = c ^ (b | ~d);
            word = (7 * step) % 16;
            break;
        }
        const uint32_t sum = a + mixed + kSines[step] + LoadLittleEndian(block + 4 * word);
        a = d;
        d = c;
        c = b;
        b += RotateLeft(sum, kShifts[step / 16][step % 4]);
    }
    mState[0] += a;
    mState[1] += b;
    mState[2] += c;
    mState[3] += d;
}

void MD5::Update(const void* data, size_t length) {
    const uint8_t* bytes = static_cast<const uint8_t*>(data);
    size_t used = static_cast<size_t>(mLength % kBlockSize);
    mLength += length;
    while (length > 0) {
        const size_t take = std::min(length, kBlockSize - used);
        std::memcpy(mBlock + used, bytes, take);
        used += take;
        bytes += take;
        length -= take;
        if (used == kBlockSize) {
            Transform(mBlock);
            used = 0;
        }
    }
}

std::string MD5::Finalise() {
    const uint64_t bits = mLength * 8;
    const size_t used = static_cast<size_t>(mLength % kBlockSize);
    const size_t padding =
        (used < kLengthOffset ? kLengthOffset : kBlockSize + kLengthOffset) - used;
    uint8_t tail[kBlockSize + 8] = {0x80};
    for (size_t i = 0; i < 8; ++i) {
        tail[padding + i] = static_cast<uint8_t>(bits >> (8 * i));
    }
    Update(tail, padding + 8);

    std::string hex;
    for (const uint32_t word : mState) {
        for (int shift = 0; shift < 32; shift += 8) {
            char digits[3] = {};
            std::snprintf(digits, sizeof digits, "%02x",
                          static_cast<unsigned>(word >> shift) & 0xFFU);
            hex.append(digits);
        }
    }
    return hex;
}

std::string MD5::Hex(const std::string& data) {
    MD5 digest;
    digest.Update(data.data(), data.size());
    return digest.Finalise();
}

} // namespace VESK
} // namespace Braxel
