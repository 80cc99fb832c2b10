#ifndef VESK_SIMULATORS_KZ_STEP_PARSER_H
#define VESK_SIMULATORS_KZ_STEP_PARSER_H

#include <string>

#include "event.h"
#include "settings.h"

namespace vesk::kzsim {

/// Reads one step, "<delay>:<event>", see kz_sim.ini.
class StepParser {
public:
    StepParser(std::string text, const Settings& settings)
        : mRest(std::move(text)), mSettings(settings) {}

    /// @return false when it is none; the delay may have been read all the same.
    bool parse(Step& step);

private:
    // Each reads the fields of one kind of event into the bag.
    void unknown();
    void nothing() {}
    void qrCode();
    void qrCodeLogin();
    void platformKey();
    void resultCode();
    void localList();
    void localUser();
    void loginRecord();
    void userInfo();

    void addLogin(const char* openidKey);
    void addError();

    std::string next();
    std::string rest();
    LONG number();

    std::string mRest;
    const Settings& mSettings;
    bool mGood = true;
    PropertyBag::Pointer mBag = PropertyBag::make();
};

} // namespace vesk::kzsim

#endif
