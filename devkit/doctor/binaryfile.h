#ifndef VESK_DEVKIT_DOCTOR_BINARYFILE_H
#define VESK_DEVKIT_DOCTOR_BINARYFILE_H

#include <set>
#include <string>

namespace vesk::doctor {

/// A shared library as it lies on the disk. It is read, never loaded: nothing of it runs.
struct BinaryFile {
    enum class Kind { Unknown, Windows64, Windows32, Linux64 };

    Kind kind = Kind::Unknown;
    bool damaged = false; ///< of that kind, but a part of it is missing
    std::set<std::string> exports;
};

BinaryFile readBinaryFile(const std::string& bytes);

/// "a library for 64-bit Windows" and so on.
std::string kindText(BinaryFile::Kind kind);

} // namespace vesk::doctor

#endif
