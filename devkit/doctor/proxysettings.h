#ifndef VESK_DEVKIT_DOCTOR_PROXYSETTINGS_H
#define VESK_DEVKIT_DOCTOR_PROXYSETTINGS_H

#include "backendaddress.h"
#include "finding.h"

namespace vesk::doctor {

/// The environment variables by which libcurl, and with it the SDK, goes to @p address by way of a
/// proxy.
Findings checkProxy(const BackendAddress& address);

} // namespace vesk::doctor

#endif
