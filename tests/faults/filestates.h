#ifndef VESK_TESTS_FAULTS_FILESTATES_H
#define VESK_TESTS_FAULTS_FILESTATES_H

#include <string>
#include <sys/stat.h>
#include <vector>

#include "support/files.h"

namespace vesk::test {

/// What may lie in the place of a file.
inline const std::vector<std::string> kFileStates = {"missing",  "empty",  "unreadable",
                                                     "a folder", "a FIFO", "a full device"};

inline void putFile(const std::filesystem::path& file, const std::string& state) {
    std::filesystem::remove_all(file);
    if (state == "empty") {
        writeFile(file, "");
    } else if (state == "unreadable") {
        writeFile(file, "KZ1234");
        std::filesystem::permissions(file, std::filesystem::perms::none);
    } else if (state == "a folder") {
        std::filesystem::create_directories(file / "with something in it");
    } else if (state == "a FIFO") {
        mkfifo(file.c_str(), 0600);
    } else if (state == "a full device") {
        std::filesystem::create_symlink("/dev/full", file);
    }
}

} // namespace vesk::test

#endif
