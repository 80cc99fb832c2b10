#include "server/endsignal.h"

#include <windows.h>

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

} // namespace

EndSignal::EndSignal() {
    endEvent();
    SetConsoleCtrlHandler(onControl, TRUE);
}

void EndSignal::wait() {
    WaitForSingleObject(endEvent(), INFINITE);
}

} // namespace vesk::backend
