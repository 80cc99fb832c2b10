#ifndef VESK_DEVKIT_BACKEND_SERVER_ORIGINGUARD_H
#define VESK_DEVKIT_BACKEND_SERVER_ORIGINGUARD_H

#include <string>

#include "httplib.h"

namespace vesk::backend {

/// The port listens on loopback, but so does the browser: a page of another site could reach it.
/// It is refused by its origin; and by the host name, should it have pointed its own name here.
/// @return an empty text, or why the request is refused.
std::string refusalOf(const httplib::Request& request);

/// Refuses such requests to every route of the server.
void guardOrigins(httplib::Server& server);

} // namespace vesk::backend

#endif
