#ifndef VESK_DEVKIT_BACKEND_SERVER_JSONANSWER_H
#define VESK_DEVKIT_BACKEND_SERVER_JSONANSWER_H

#include <rapidjson/document.h>
#include <string>

#include "httplib.h"

namespace vesk::backend {

/// JSON over the control port.
constexpr const char* kJsonType = "application/json";

/// Answers {"error":"<what is wrong>"}.
void answerError(httplib::Response& response, int status, const std::string& error);

/// Reads a body that must be a JSON object and say so in its content type: a form on a page of
/// another site cannot send that type.
/// @return whether it is one; if not, the response says what is wrong.
bool readJsonObject(const httplib::Request& request, const httplib::ContentReader& reader,
                    rapidjson::Document& document, httplib::Response& response);

/// A member's text; empty when it is missing or no string.
std::string textMember(const rapidjson::Value& object, const char* name);

} // namespace vesk::backend

#endif
