#ifndef VESK_DEVKIT_BACKEND_ANSWERS_BODYSENDER_H
#define VESK_DEVKIT_BACKEND_ANSWERS_BODYSENDER_H

#include <string>

#include "answers/scriptedanswer.h"
#include "httplib.h"
#include "server/waitingroom.h"

namespace vesk::backend {

/// Sends the body as the script says: whole or cut, once or many times, byte by byte, with or
/// without the truth about its length.
/// @param waitingRoom outlives the response
void sendBody(const ScriptedAnswer& script, const std::string& body, WaitingRoom& waitingRoom,
              httplib::Response& response);

} // namespace vesk::backend

#endif
