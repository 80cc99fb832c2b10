#ifndef VESK_DEVKIT_CONSOLE_JSONREPORT_H
#define VESK_DEVKIT_CONSOLE_JSONREPORT_H

#include "report.h"

/// One JSON object a line.
class JsonReport final : public Report {
public:
    void login(const Braxel::VESK::VESKLoginRet& ret) override;
    void qrCode(const Braxel::VESK::VESKQrCodeRet& ret) override;
    void logout(const Braxel::VESK::VESKBaseRet& ret) override;
    void status(bool held, const Braxel::VESK::VESKLoginRet& ret) override;
    void refreshed(bool held, const Braxel::VESK::VESKLoginRet& ret) override;
    void timeout(const std::string& word) override;
};

#endif
