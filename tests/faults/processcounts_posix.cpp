#include "faults/processcounts.h"

#include <filesystem>
#include <fstream>
#include <string>

namespace vesk::test {

const size_t kSystemThreads = 0;

namespace {

size_t entries(const char* folder) {
    size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        count += entry.path().empty() ? 0 : 1;
    }
    return count;
}

} // namespace

ProcessCounts countProcess() {
    ProcessCounts counts;
    counts.descriptors = entries("/proc/self/fd");
    counts.threads = entries("/proc/self/task");
    std::ifstream status("/proc/self/status");
    for (std::string key; status >> key;) {
        size_t kilobytes = 0;
        if (key == "VmRSS:" && status >> kilobytes) {
            counts.residentBytes = kilobytes * 1024;
        } else if (key == "VmHWM:" && status >> kilobytes) {
            counts.peakResidentBytes = kilobytes * 1024;
        }
    }
    return counts;
}

} // namespace vesk::test
