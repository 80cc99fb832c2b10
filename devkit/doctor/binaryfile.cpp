#include "binaryfile.h"

#include <stdexcept>

#include "bytereader.h"

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

/// Where an address of the loaded file lies in the file.
uint64_t placeOf(const ByteReader& file, uint64_t pe, uint64_t address) {
    const uint64_t sections = pe + kPeHeader + file.number(pe + 20, 2);
    const uint64_t count = file.number(pe + 6, 2);
    for (uint64_t i = 0; i < count; ++i) {
        const uint64_t section = sections + i * kPeSection;
        const uint64_t begin = file.number(section + 12, 4);
        if (address >= begin && address - begin < file.number(section + 16, 4)) {
            return file.number(section + 20, 4) + address - begin;
        }
    }
    throw std::out_of_range("an address in no section");
}

void readPe(const ByteReader& file, uint64_t pe, std::set<std::string>& exports) {
    const uint64_t directory = file.number(pe + kPeHeader + kPeDirectories, 4);
    if (directory == 0) {
        return;
    }
    const uint64_t table = placeOf(file, pe, directory);
    const uint64_t count = file.number(table + 24, 4);
    const uint64_t names = count == 0 ? 0 : placeOf(file, pe, file.number(table + 32, 4));
    for (uint64_t i = 0; i < count; ++i) {
        exports.insert(file.text(placeOf(file, pe, file.number(names + 4 * i, 4))));
    }
}

void readElf(const ByteReader& file, std::set<std::string>& exports) {
    const uint64_t sections = file.number(0x28, 8);
    const uint64_t sectionSize = file.number(0x3A, 2);
    const uint64_t count = file.number(0x3C, 2);
    for (uint64_t i = 0; i < count; ++i) {
        const uint64_t section = sections + i * sectionSize;
        if (file.number(section + 4, 4) != kElfDynamicSymbols) {
            continue;
        }
        const uint64_t symbols = file.number(section + 0x18, 8);
        const uint64_t size = file.number(section + 0x20, 8);
        const uint64_t texts = sections + file.number(section + 0x28, 4) * sectionSize;
        const uint64_t names = file.number(texts + 0x18, 8);
        for (uint64_t symbol = symbols; symbol < symbols + size; symbol += kElfSymbol) {
            // Section 0 means that the library needs the symbol and does not have it.
            if (file.number(symbol + 6, 2) != 0) {
                exports.insert(file.text(names + file.number(symbol, 4)));
            }
        }
    }
}

Kind kindOf(const ByteReader& file, const std::string& bytes) {
    if (bytes.compare(0, 5,
                      "\x7F"
                      "ELF\x02") == 0 &&
        file.number(0x12, 2) == kElfMachineAmd64) {
        return Kind::Linux64;
    }
    if (bytes.compare(0, 2, "MZ") != 0) {
        return Kind::Unknown;
    }
    const uint64_t pe = file.number(kPeOffset, 4);
    const bool large =
        file.number(pe + 4, 2) == kPeMachineAmd64 && file.number(pe + kPeHeader, 2) == kPePlus;
    return large ? Kind::Windows64 : Kind::Windows32;
}

} // namespace

BinaryFile readBinaryFile(const std::string& bytes) {
    const ByteReader file(bytes);
    BinaryFile result;
    try {
        result.kind = kindOf(file, bytes);
        if (result.kind == Kind::Linux64) {
            readElf(file, result.exports);
        } else if (result.kind == Kind::Windows64) {
            readPe(file, file.number(kPeOffset, 4), result.exports);
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
