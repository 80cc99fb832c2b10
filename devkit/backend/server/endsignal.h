#ifndef VESK_DEVKIT_BACKEND_SERVER_ENDSIGNAL_H
#define VESK_DEVKIT_BACKEND_SERVER_ENDSIGNAL_H

namespace vesk::backend {

/// SIGTERM and SIGINT; on Windows Ctrl-C, Ctrl-Break and the closing of the console window. One
/// object a process, made before any thread starts.
class EndSignal {
public:
    EndSignal();

    /// Returns when the program shall end, also when that was asked for before.
    void wait();
};

} // namespace vesk::backend

#endif
