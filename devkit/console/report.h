#ifndef VESK_DEVKIT_CONSOLE_REPORT_H
#define VESK_DEVKIT_CONSOLE_REPORT_H

#include <string>

#include "vesk/veskret.h"

/// Tells the user what has happened. Everything goes to standard error, as standard output is the
/// SDK's.
class Report {
public:
    Report() = default;
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;
    virtual ~Report() = default;

    virtual void login(const Braxel::VESK::VESKLoginRet& ret) = 0;
    virtual void qrCode(const Braxel::VESK::VESKQrCodeRet& ret) = 0;
    virtual void logout(const Braxel::VESK::VESKBaseRet& ret) = 0;
    virtual void status(bool held, const Braxel::VESK::VESKLoginRet& ret) = 0;
    virtual void refreshed(bool held, const Braxel::VESK::VESKLoginRet& ret) = 0;
    virtual void timeout(const std::string& word) = 0;
};

#endif
