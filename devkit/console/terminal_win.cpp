#include <windows.h>

#include "console.h"

Terminal::Terminal() {
    HANDLE const console = GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    const UINT codePage = GetConsoleOutputCP();
    mIsTerminal = GetConsoleMode(console, &mode) != 0;
    mHasColours =
        mIsTerminal && SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
    SetConsoleOutputCP(CP_UTF8);
    mRestore.reset(console, [codePage, mode, colours = mHasColours](void* handle) {
        if (colours) {
            SetConsoleMode(handle, mode);
        }
        if (codePage != 0) {
            SetConsoleOutputCP(codePage);
        }
    });
}
