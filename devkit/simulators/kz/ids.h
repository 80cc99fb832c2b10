#ifndef VESK_SIMULATORS_KZ_IDS_H
#define VESK_SIMULATORS_KZ_IDS_H

#include <guiddef.h>

namespace vesk::kzsim {

/// An id of the contract, which has them in their text form.
GUID idOf(const char* text);

} // namespace vesk::kzsim

#endif
