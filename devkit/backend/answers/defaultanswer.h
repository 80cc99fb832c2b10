#ifndef VESK_DEVKIT_BACKEND_ANSWERS_DEFAULTANSWER_H
#define VESK_DEVKIT_BACKEND_ANSWERS_DEFAULTANSWER_H

#include <string>

#include "answers/issued.h"
#include "checks/contract.h"
#include "checks/requestcheck.h"

namespace vesk::backend {

/// {"ret":0,"msg":""}
std::string plainAnswer();

/// {"ret":<code>,"msg":"<what is wrong>"}
std::string problemAnswer(const Problem& problem);

/// {"ret":0,"msg":"","precode":"<the pre-code>"}
std::string preCodeAnswer(const std::string& preCode);

/// A whole account record; "channel_info" and "seq" go back as they came.
/// @param now the backend's clock in Unix seconds; the token is good for two hours
std::string loginAnswer(const IssuedLogin& login, const CheckedRequest& request, long long now);

} // namespace vesk::backend

#endif
