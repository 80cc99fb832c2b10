#include "module.h"

#include <string_view>

namespace vesk::doctor {

namespace {

using namespace std::string_view_literals;

bool holdsAt(std::string_view bytes, size_t place, std::string_view wanted) {
    return place <= bytes.size() && bytes.substr(place, wanted.size()) == wanted;
}

/// Where a Windows file has its header, behind the one of DOS.
size_t headerOf(std::string_view bytes) {
    size_t place = 0;
    for (size_t i = 0x40; i > 0x3C && i <= bytes.size(); --i) {
        place = place << 8 | static_cast<unsigned char>(bytes[i - 1]);
    }
    return place;
}

} // namespace

ModuleKind kindOf(const std::string& bytes) {
    if (holdsAt(bytes, 0, "\x7F\x45LF\x02"sv) && holdsAt(bytes, 0x12, "\x3E\0"sv)) {
        return ModuleKind::Linux64;
    }
    const size_t header = headerOf(bytes);
    if (!holdsAt(bytes, 0, "MZ"sv) || !holdsAt(bytes, header, "PE\0\0"sv)) {
        return ModuleKind::None;
    }
    return holdsAt(bytes, header + 4, "\x64\x86"sv) ? ModuleKind::Windows64 : ModuleKind::Windows32;
}

std::string kindText(ModuleKind kind) {
    switch (kind) {
    case ModuleKind::Windows64:
        return "a library for 64-bit Windows";
    case ModuleKind::Windows32:
        return "a library for 32-bit Windows";
    case ModuleKind::Linux64:
        return "a library for 64-bit Linux";
    case ModuleKind::None:
        break;
    }
    return "no library";
}

} // namespace vesk::doctor
