#ifndef VESK_SIMULATORS_KZ_SETTINGS_H
#define VESK_SIMULATORS_KZ_SETTINGS_H

#include <windows.h>
#include <string>

namespace vesk::kzsim {

/// How the simulated component behaves now: kz_sim.ini beside the library, see there for the keys.
/// A call of the component makes one, so that a test may change the file between two calls.
class Settings {
public:
    Settings();

    /// A key that is there without a value is an empty text, not the other value.
    std::string text(const char* key, const char* otherwise) const;
    long number(const char* key, long otherwise) const;

    /// What a call answers; success when nothing is said.
    HRESULT result(const char* key) const { return static_cast<HRESULT>(number(key, S_OK)); }

private:
    std::string mText;
};

} // namespace vesk::kzsim

#endif
