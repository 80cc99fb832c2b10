// The program's own open, write, close and fclose stand in for the C library's: the linker finds
// them first, for the SDK's objects are part of this program.
#include "slowdisk.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace vesk::bench {
namespace {

std::atomic<int> gEachMs{0};

void take(int times = 1) {
    const int milliseconds = gEachMs;
    if (milliseconds != 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds * times));
    }
}

/// Files alone: sockets and pipes are no part of the disk.
bool isFile(int descriptor) {
    struct stat status = {};
    return gEachMs != 0 && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

template <typename Function>
Function* real(Function* /*standIn*/, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

void slowDisk(std::chrono::milliseconds each) {
    gEachMs = static_cast<int>(each.count());
}

} // namespace vesk::bench

using namespace vesk::bench;

extern "C" {

int open(const char* path, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    take();
    return real(&open, "open")(path, flags, mode);
}

ssize_t write(int descriptor, const void* data, size_t size) {
    if (isFile(descriptor)) {
        take();
    }
    return real(&write, "write")(descriptor, data, size);
}

int close(int descriptor) {
    if (isFile(descriptor)) {
        take();
    }
    return real(&close, "close")(descriptor);
}

int fclose(std::FILE* stream) {
    if (isFile(fileno(stream))) {
        take(2); // what it has kept is written
    }
    return real(&fclose, "fclose")(stream);
}

} // extern "C"
