#ifndef VESK_DEVKIT_BACKEND_SCANPAGE_CONSOLEPAGE_H
#define VESK_DEVKIT_BACKEND_SCANPAGE_CONSOLEPAGE_H

#include "httplib.h"

namespace vesk::backend {

/// GET / and what it refers to, out of the program itself. The browser is told to fetch nothing
/// from elsewhere, to run no script but the console's own, and to show it in nobody's frame, where
/// a click could be stolen.
void installConsolePage(httplib::Server& server);

} // namespace vesk::backend

#endif
