#ifndef VESK_DEVKIT_BACKEND_ANSWERS_DELIVERY_H
#define VESK_DEVKIT_BACKEND_ANSWERS_DELIVERY_H

#include <string>

#include "answers/scriptedanswer.h"
#include "httplib.h"
#include "server/waitingroom.h"

namespace vesk::backend {

struct Answer {
    /// 0 when none is sent.
    int status = 200;
    std::string body;
};

/// Answers as the script says: late or never, the body whole or cut, once or many times, byte by
/// byte, with or without the truth about its length.
/// @param waitingRoom outlives the response
void deliver(const ScriptedAnswer& script, const Answer& answer, WaitingRoom& waitingRoom,
             const httplib::Request& request, httplib::Response& response);

} // namespace vesk::backend

#endif
