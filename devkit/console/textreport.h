#ifndef VESK_DEVKIT_CONSOLE_TEXTREPORT_H
#define VESK_DEVKIT_CONSOLE_TEXTREPORT_H

#include "report.h"

/// Sentences for a person, and QR codes to scan from the screen.
class TextReport final : public Report {
public:
    /// @param drawCodes whether QR codes are drawn at all.
    /// @param colours whether they may switch colours.
    TextReport(bool drawCodes, bool colours) : mDrawCodes(drawCodes), mColours(colours) {}

    void login(const Braxel::VESK::VESKLoginRet& ret) override;
    void qrCode(const Braxel::VESK::VESKQrCodeRet& ret) override;
    void logout(const Braxel::VESK::VESKBaseRet& ret) override;
    void status(bool held, const Braxel::VESK::VESKLoginRet& ret) override;
    void refreshed(bool held, const Braxel::VESK::VESKLoginRet& ret) override;
    void timeout(const std::string& word) override;

private:
    bool mDrawCodes;
    bool mColours;
};

#endif
