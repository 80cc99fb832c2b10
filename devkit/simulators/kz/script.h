#ifndef VESK_SIMULATORS_KZ_SCRIPT_H
#define VESK_SIMULATORS_KZ_SCRIPT_H

#include "event.h"
#include "settings.h"

namespace vesk::kzsim {

/// The events that follow a call, as the setting @p key lists them, late when "late_ms" says so. A
/// step that cannot be read is written down as a problem and left out; its delay counts all the
/// same.
Script readScript(const Settings& settings, const char* key);

/// The same for steps that come from elsewhere; problems are written down under the name @p key.
Script readSteps(const Settings& settings, const char* key, const std::string& steps);

} // namespace vesk::kzsim

#endif
