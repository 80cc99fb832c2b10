#ifndef VESK_DEVKIT_DOCTOR_CONNECTIONCHECK_H
#define VESK_DEVKIT_DOCTOR_CONNECTIONCHECK_H

#include "backendaddress.h"
#include "connection.h"
#include "finding.h"
#include "pem.h"

namespace vesk::doctor {

/// What a try at the backend tells: name, connection, certificate, answer, clock; up to the step
/// that has failed.
/// @param trusted what stands in cacert.pem.
Findings checkConnection(const BackendAddress& address, const Connection& connection,
                         const Pem& trusted);

} // namespace vesk::doctor

#endif
