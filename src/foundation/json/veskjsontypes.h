#ifndef VESK_FOUNDATION_JSON_VESKJSONTYPES_H
#define VESK_FOUNDATION_JSON_VESKJSONTYPES_H

#include <cstdlib>
#include <new>
#include <rapidjson/fwd.h>

namespace Braxel {
namespace VESK {

/// Memory for rapidjson, which does not look whether it has got any: what cannot be had is an
/// exception, as everywhere else in the library.
class VESKJsonAllocator {
public:
    static const bool kNeedFree = true;

    void* Malloc(size_t size) { return size == 0 ? nullptr : Checked(std::malloc(size)); }

    void* Realloc(void* memory, size_t /*oldSize*/, size_t newSize) {
        if (newSize == 0) {
            std::free(memory);
            return nullptr;
        }
        return Checked(std::realloc(memory, newSize));
    }

    static void Free(void* memory) { std::free(memory); }

private:
    static void* Checked(void* memory) {
        if (memory == nullptr) {
            throw std::bad_alloc();
        }
        return memory;
    }
};

using JsonPool = rapidjson::MemoryPoolAllocator<VESKJsonAllocator>;
using JsonDocument = rapidjson::GenericDocument<rapidjson::UTF8<char>, JsonPool, VESKJsonAllocator>;
using JsonValue = rapidjson::GenericValue<rapidjson::UTF8<char>, JsonPool>;
using JsonStringBuffer = rapidjson::GenericStringBuffer<rapidjson::UTF8<char>, VESKJsonAllocator>;
using JsonStringWriter = rapidjson::Writer<JsonStringBuffer, rapidjson::UTF8<char>,
                                           rapidjson::UTF8<char>, VESKJsonAllocator, 0>;

} // namespace VESK
} // namespace Braxel

#endif
