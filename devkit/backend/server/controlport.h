#ifndef VESK_DEVKIT_BACKEND_SERVER_CONTROLPORT_H
#define VESK_DEVKIT_BACKEND_SERVER_CONTROLPORT_H

#include <functional>
#include <rapidjson/document.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "httplib.h"

namespace vesk::backend {

/// Why a request to the control port is refused. A handler throws it, and the answer is
/// {"error":"<why>"} with that status.
class Refusal : public std::runtime_error {
public:
    Refusal(int status, const std::string& why) : std::runtime_error(why), mStatus(status) {}
    int status() const { return mStatus; }

private:
    int mStatus;
};

/// The JSON object that was posted to the control port. What is not as it is asked for is refused.
class PostedJson {
public:
    explicit PostedJson(const std::string& text);

    bool has(const char* name) const { return mDocument.HasMember(name); }

    /// A text; empty when it is missing.
    std::string text(const char* name) const;

    /// A whole number from @p min to @p max; @p missing when it is missing.
    int number(const char* name, int min, int max, int missing) const;

    /// Which of the names a text is, counted from 0; the first when it is missing and may be.
    size_t choice(const char* name, const std::vector<std::string>& names, bool mayMiss) const;

    /// Refuses members that are none of these.
    void allowOnly(const std::vector<std::string>& names) const;

private:
    rapidjson::Document mDocument;
};

/// What every route of the control port has in common: GET /health, refusals, and that no page of
/// another site steers the backend.
void installControlPort(httplib::Server& server);

/// Makes the answer, which is JSON.
using GetHandler = std::function<std::string(const httplib::Request&)>;
using PostHandler = std::function<std::string(const httplib::Request&, const std::string& body)>;
using JsonHandler = std::function<std::string(const httplib::Request&, const PostedJson& body)>;

void onGet(httplib::Server& server, const char* path, const GetHandler& handler);
void onPost(httplib::Server& server, const char* path, const PostHandler& handler);

/// A POST whose content type must be that of JSON: a form on a page of another site cannot send it.
void onJson(httplib::Server& server, const char* path, const JsonHandler& handler);

} // namespace vesk::backend

#endif
