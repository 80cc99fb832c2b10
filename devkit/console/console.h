#ifndef VESK_DEVKIT_CONSOLE_CONSOLE_H
#define VESK_DEVKIT_CONSOLE_CONSOLE_H

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "vesk/vesk.hpp"

/// What the command line asks for.
struct Options {
    std::string complaint; ///< what is wrong with the command line, one sentence; or empty
    std::string help;      ///< a text that is asked for instead of anything else; or empty

    std::vector<std::string> words; ///< run in this order
    std::string channel;
    std::string extraJson;
    bool channelOnly = false;
    int timeout = 60; ///< seconds to wait for each result
    int linger = 1;   ///< seconds at most to stay after a logout
    bool json = false;
    std::optional<bool> drawCodes; ///< QR codes; on terminals unless told
    bool offline = false;          ///< the doctor leaves the backend alone
};

Options parseOptions(int argc, char** argv);

/// What standard error is connected with. As long as the object lives, a Windows console takes
/// UTF-8 and colour sequences; afterwards it is as before.
class Terminal {
public:
    Terminal();

    bool isTerminal() const { return mIsTerminal; }
    bool hasColours() const { return mHasColours; }

private:
    bool mIsTerminal = false;
    bool mHasColours = false;
    std::shared_ptr<void> mRestore; ///< its end undoes what was switched
};

/// Tells the user what has happened. Everything goes to standard error, as standard output is the
/// SDK's.
class Report {
public:
    Report() = default;
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;
    virtual ~Report() = default;

    virtual void login(const vesk::LoginRet& ret) = 0;
    virtual void qrCode(const vesk::QrCodeRet& ret) = 0;
    virtual void logout(const vesk::BaseRet& ret) = 0;
    virtual void status(bool held, const vesk::LoginRet& ret) = 0;
    virtual void refreshed(bool held, const vesk::LoginRet& ret) = 0;
    virtual void timeout(const std::string& word) = 0;
};

/// One JSON object a line.
std::unique_ptr<Report> makeJsonReport();

/// Sentences for a person, and QR codes to scan from the screen.
/// @param drawCodes whether QR codes are drawn at all.
/// @param colours whether they may switch colours.
std::unique_ptr<Report> makeTextReport(bool drawCodes, bool colours);

/// What may be shown of a secret: its first four characters and its length. Nothing but the length
/// of one that is so short that four would be half of it.
inline std::string masked(const std::string& secret) {
    constexpr std::string::size_type kShown = 4;
    const std::string begin = secret.size() > 2 * kShown ? secret.substr(0, kShown) : "";
    return begin + "...(" + std::to_string(secret.size()) + ")";
}

#endif
