#include "binaryfile.h"

#include <cstdint>
#include <stdexcept>

namespace vesk::doctor {

namespace {

using Kind = BinaryFile::Kind;

// Windows: the places in a PE file.
constexpr uint64_t kPeOffset = 0x3C;
constexpr uint64_t kPeMachineAmd64 = 0x8664;
constexpr uint64_t kPeHeader = 24; ///< signature and file header
constexpr uint64_t kPePlus = 0x20B;
constexpr uint64_t kPeDirectories = 112;
constexpr uint64_t kPeSection = 40;

// Linux: the places in an ELF file.
constexpr uint64_t kElfMachineAmd64 = 62;
constexpr uint64_t kElfDynamicSymbols = 11;
constexpr uint64_t kElfSymbol = 24;

/// A little-endian number at a place in a file; throws std::out_of_range beyond its end.
uint64_t number(const std::string& file, uint64_t at, unsigned size) {
    if (at > file.size() || file.size() - at < size) {
        throw std::out_of_range("beyond the end of the file");
    }
    uint64_t value = 0;
    for (unsigned i = size; i > 0; --i) {
        value = value << 8 | static_cast<unsigned char>(file[at + i - 1]);
    }
    return value;
}

/// The text that begins there and ends before a zero byte.
std::string text(const std::string& file, uint64_t at) {
    const size_t end = file.find('\0', at);
    number(file, end, 1); // there has to be one
    return file.substr(at, end - at);
}

/// Where an address of the loaded file lies in the file.
uint64_t placeOf(const std::string& file, uint64_t pe, uint64_t address) {
    const uint64_t sections = pe + kPeHeader + number(file, pe + 20, 2);
    const uint64_t count = number(file, pe + 6, 2);
    for (uint64_t i = 0; i < count; ++i) {
        const uint64_t section = sections + i * kPeSection;
        const uint64_t begin = number(file, section + 12, 4);
        if (address >= begin && address - begin < number(file, section + 16, 4)) {
            return number(file, section + 20, 4) + address - begin;
        }
    }
    throw std::out_of_range("an address in no section");
}

void readPe(const std::string& file, uint64_t pe, std::set<std::string>& exports) {
    const uint64_t directory = number(file, pe + kPeHeader + kPeDirectories, 4);
    if (directory == 0) {
        return;
    }
    const uint64_t table = placeOf(file, pe, directory);
    const uint64_t count = number(file, table + 24, 4);
    const uint64_t names = count == 0 ? 0 : placeOf(file, pe, number(file, table + 32, 4));
    for (uint64_t i = 0; i < count; ++i) {
        exports.insert(text(file, placeOf(file, pe, number(file, names + 4 * i, 4))));
    }
}

void readElf(const std::string& file, std::set<std::string>& exports) {
    const uint64_t sections = number(file, 0x28, 8);
    const uint64_t sectionSize = number(file, 0x3A, 2);
    const uint64_t count = number(file, 0x3C, 2);
    for (uint64_t i = 0; i < count; ++i) {
        const uint64_t section = sections + i * sectionSize;
        if (number(file, section + 4, 4) != kElfDynamicSymbols) {
            continue;
        }
        const uint64_t symbols = number(file, section + 0x18, 8);
        const uint64_t size = number(file, section + 0x20, 8);
        const uint64_t texts = sections + number(file, section + 0x28, 4) * sectionSize;
        const uint64_t names = number(file, texts + 0x18, 8);
        for (uint64_t symbol = symbols; symbol < symbols + size; symbol += kElfSymbol) {
            // Section 0 means that the library needs the symbol and does not have it.
            if (number(file, symbol + 6, 2) != 0) {
                exports.insert(text(file, names + number(file, symbol, 4)));
            }
        }
    }
}

Kind kindOf(const std::string& file) {
    if (file.compare(0, 5,
                     "\x7F"
                     "ELF\x02") == 0 &&
        number(file, 0x12, 2) == kElfMachineAmd64) {
        return Kind::Linux64;
    }
    if (file.compare(0, 2, "MZ") != 0) {
        return Kind::Unknown;
    }
    const uint64_t pe = number(file, kPeOffset, 4);
    const bool large =
        number(file, pe + 4, 2) == kPeMachineAmd64 && number(file, pe + kPeHeader, 2) == kPePlus;
    return large ? Kind::Windows64 : Kind::Windows32;
}

} // namespace

BinaryFile readBinaryFile(const std::string& bytes) {
    BinaryFile result;
    try {
        result.kind = kindOf(bytes);
        if (result.kind == Kind::Linux64) {
            readElf(bytes, result.exports);
        } else if (result.kind == Kind::Windows64) {
            readPe(bytes, number(bytes, kPeOffset, 4), result.exports);
        }
    } catch (const std::out_of_range&) {
        result.damaged = true;
    }
    return result;
}

std::string kindText(Kind kind) {
    switch (kind) {
    case Kind::Windows64:
        return "a library for 64-bit Windows";
    case Kind::Windows32:
        return "a library for 32-bit Windows";
    case Kind::Linux64:
        return "a library for 64-bit Linux";
    case Kind::Unknown:
        break;
    }
    return "no library";
}

} // namespace vesk::doctor
