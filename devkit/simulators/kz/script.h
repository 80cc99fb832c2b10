#ifndef VESK_DEVKIT_SIMULATORS_KZ_SCRIPT_H
#define VESK_DEVKIT_SIMULATORS_KZ_SCRIPT_H

#include <string>
#include <vector>

#include "propertybag.h"
#include "simulator.h"

namespace vesk::kzsim {

/// What a listener hears: a notify type and a result object, which may be null.
struct Event {
    LONG type = 0;
    PropertyBag::Pointer bag;
};

/// An event and how many milliseconds after the step before it (the first one: after the call) it
/// comes.
struct Step {
    ULONGLONG delay = 0;
    Event event;
};

using Script = std::vector<Step>;

/// The events that follow a call, as the setting @p key lists them, late when "late_ms" says so. A
/// step that cannot be read is written down as a problem and left out; its delay counts all the
/// same.
Script readScript(const simulator::Settings& settings, const char* key);

/// The same for steps that come from elsewhere; problems are written down under the name @p key.
Script readSteps(const simulator::Settings& settings, const char* key, const std::string& steps);

} // namespace vesk::kzsim

#endif
