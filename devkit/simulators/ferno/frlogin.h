#ifndef VESK_SIMULATORS_FERNO_FRLOGIN_H
#define VESK_SIMULATORS_FERNO_FRLOGIN_H

#include <memory>

#include "component.h"

namespace vesk::fernosim {

/// The one component of the process; null outside frlogin_init and frlogin_uninit.
std::unique_ptr<Component>& theComponent();

} // namespace vesk::fernosim

#endif
