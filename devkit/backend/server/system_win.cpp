#include "server/system.h"

#include <winsock2.h>
#include <bcrypt.h>
#include <stdexcept>

#include "server/json.h"

namespace vesk::backend {

namespace {

// Never closed: the system may call the handler until the process is gone.
HANDLE endEvent() {
    static const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    return event;
}

BOOL WINAPI onControl(DWORD type) {
    SetEvent(endEvent());
    if (type != CTRL_C_EVENT && type != CTRL_BREAK_EVENT) {
        // The system ends the process when the handler of these returns: main shall be first.
        Sleep(INFINITE);
    }
    return TRUE;
}

PUCHAR bytesOf(const char* data) {
    return reinterpret_cast<PUCHAR>(const_cast<char*>(data));
}

} // namespace

EndSignal::EndSignal() {
    endEvent();
    SetConsoleCtrlHandler(onControl, TRUE);
}

void EndSignal::wait() {
    WaitForSingleObject(endEvent(), INFINITE);
}

void claimPort(std::intptr_t listener) {
    // A port is free here as soon as its program has ended.
    const BOOL on = TRUE;
    ::setsockopt(static_cast<SOCKET>(listener), SOL_SOCKET, SO_EXCLUSIVEADDRUSE,
                 reinterpret_cast<const char*>(&on), sizeof(on));
}

bool hasArrived(std::intptr_t socket) {
    pollfd state{};
    state.fd = static_cast<SOCKET>(socket);
    state.events = POLLIN;
    return WSAPoll(&state, 1, 0) > 0;
}

bool canReset() {
    return false;
}

std::string md5Hex(std::string_view data) {
    BCRYPT_ALG_HANDLE algorithm = nullptr;
    std::string digest(16, '\0');
    bool done = BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_MD5_ALGORITHM, nullptr, 0) == 0;
    if (done) {
        done =
            BCryptHash(algorithm, nullptr, 0, bytesOf(data.data()), static_cast<ULONG>(data.size()),
                       bytesOf(digest.data()), static_cast<ULONG>(digest.size())) == 0;
        BCryptCloseAlgorithmProvider(algorithm, 0);
    }
    if (!done) {
        throw std::runtime_error("Windows computed no digest");
    }
    return toHex(digest);
}

} // namespace vesk::backend
