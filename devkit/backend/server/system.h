#ifndef VESK_DEVKIT_BACKEND_SERVER_SYSTEM_H
#define VESK_DEVKIT_BACKEND_SERVER_SYSTEM_H

#include <cstdint>
#include <string>
#include <string_view>

namespace vesk::backend {

/// SIGTERM and SIGINT; on Windows Ctrl-C, Ctrl-Break and the closing of the console window. One
/// object a process, made before any thread starts.
class EndSignal {
public:
    EndSignal();

    /// Returns when the program shall end, also when that was asked for before.
    void wait();
};

/// Before a listening socket is bound: no other program gets its port, but the one after this
/// program gets it at once.
void claimPort(std::intptr_t listener);

/// Whether something can be read from a connected socket, its end too.
bool hasArrived(std::intptr_t socket);

/// Whether a connection can be reset. Windows resets when the last handle is closed only, and that
/// one is the HTTP library's: there the peer sees an orderly end.
bool canReset();

/// MD5 as 32 lower-case hexadecimal digits. Throws std::runtime_error when that refuses.
std::string md5Hex(std::string_view data);

} // namespace vesk::backend

#endif
