#ifndef VESK_SIMULATORS_FERNO_FRLOGIN_H
#define VESK_SIMULATORS_FERNO_FRLOGIN_H

#include <memory>

#include "component.h"

namespace vesk::fernosim {

/// The one component of the process; null outside frlogin_init and frlogin_uninit. Whoever has got
/// it keeps it.
std::shared_ptr<Component> theComponent();

/// Makes @p next the component, which may be null. @return the one before it, for the caller alone.
std::shared_ptr<Component> replaceComponent(std::shared_ptr<Component> next);

} // namespace vesk::fernosim

#endif
