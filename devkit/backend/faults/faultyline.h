#ifndef VESK_DEVKIT_BACKEND_FAULTS_FAULTYLINE_H
#define VESK_DEVKIT_BACKEND_FAULTS_FAULTYLINE_H

#include <cstddef>
#include <memory>
#include <string>

namespace vesk::backend {

/// What a line does to each connection.
struct LineFault {
    /// In the order of the names.
    enum class Action {
        Pass,   ///< carries everything
        Refuse, ///< nobody listens
        Deaf,   ///< connection attempts are not answered
        Reset,  ///< the client sees a TCP reset
        Close,  ///< the client sees an orderly end
        Stall,  ///< nothing comes any more
        Flood,  ///< nothing is carried; the client is sent texts without an end
    };
    Action action = Action::Pass;
    size_t after = 0;        ///< the bytes that are carried before a reset, close or stall
    bool fromServer = false; ///< whose bytes count: the server's, else the client's
    int delayMs = 0;         ///< how late everything comes, one way
    std::string head;        ///< what a flood begins with
    std::string wave;        ///< what it goes on with, again and again
};

/// A port that carries connections to another port of this machine, byte for byte, below TLS.
class FaultyLine {
public:
    FaultyLine() = default;
    FaultyLine(const FaultyLine&) = delete;
    FaultyLine& operator=(const FaultyLine&) = delete;
    virtual ~FaultyLine() = default;

    virtual int port() const = 0;

    /// The connections that have been made until now.
    virtual size_t connections() const = 0;

    /// Ends what is connected; from now on connections meet this fault.
    virtual void set(const LineFault& fault) = 0;
};

/// Opens a line. Throws a Refusal when there is no port, or lines cannot be had.
/// @param target the port that it leads to
std::unique_ptr<FaultyLine> openLine(int target);

} // namespace vesk::backend

#endif
