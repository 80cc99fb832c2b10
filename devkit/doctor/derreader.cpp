#include "derreader.h"

#include <cstddef>
#include <stdexcept>

namespace vesk::doctor {

DerReader::Element DerReader::next() {
    constexpr size_t kLongForm = 0x80;
    constexpr size_t kLongestLength = 4;
    if (mRest.size() < 2) {
        return {};
    }
    const auto byteAt = [this](size_t i) { return static_cast<unsigned char>(mRest[i]); };
    size_t begin = 2;
    size_t length = byteAt(1);
    if (length >= kLongForm) {
        const size_t count = length - kLongForm;
        begin += count;
        if (count == 0 || count > kLongestLength || mRest.size() < begin) {
            return {};
        }
        length = 0;
        for (size_t i = 0; i < count; ++i) {
            length = length << 8 | byteAt(2 + i);
        }
    }
    if (mRest.size() - begin < length) {
        return {};
    }
    const Element element{byteAt(0), mRest.substr(begin, length)};
    mRest.remove_prefix(begin + length);
    return element;
}

std::string_view DerReader::expect(unsigned tag) {
    const Element element = next();
    if (element.tag != tag) {
        throw std::runtime_error("another element was expected");
    }
    return element.content;
}

} // namespace vesk::doctor
