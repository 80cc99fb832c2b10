#ifndef VESK_SIMULATORS_KZ_EVENT_H
#define VESK_SIMULATORS_KZ_EVENT_H

#include <vector>

#include "property_bag.h"

namespace vesk::kzsim {

/// What a sink hears: a notify type and a result object, which may be null.
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

} // namespace vesk::kzsim

#endif
