#ifndef VESK_DEVKIT_DOCTOR_BYTEREADER_H
#define VESK_DEVKIT_DOCTOR_BYTEREADER_H

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vesk::doctor {

/// Little-endian numbers and texts at places in a file; throws std::out_of_range beyond its end.
class ByteReader {
public:
    explicit ByteReader(std::string_view bytes) : mBytes(bytes) {}

    uint64_t number(uint64_t at, unsigned size) const {
        require(at, size);
        uint64_t value = 0;
        for (unsigned i = size; i > 0; --i) {
            value = value << 8 | static_cast<unsigned char>(mBytes[at + i - 1]);
        }
        return value;
    }

    /// The text that begins there and ends before a zero byte.
    std::string text(uint64_t at) const {
        require(at, 1);
        const size_t end = mBytes.find('\0', at);
        if (end == std::string_view::npos) {
            throw std::out_of_range("a text without an end");
        }
        return std::string(mBytes.substr(at, end - at));
    }

private:
    void require(uint64_t at, uint64_t size) const {
        if (at > mBytes.size() || mBytes.size() - at < size) {
            throw std::out_of_range("beyond the end of the file");
        }
    }

    std::string_view mBytes;
};

} // namespace vesk::doctor

#endif
