#include "server/controlport.h"

#include <algorithm>
#include <rapidjson/error/en.h>

#include "server/httpserver.h"
#include "server/json.h"

namespace vesk::backend {

namespace {

void answerError(httplib::Response& response, int status, const std::string& error) {
    response.status = status;
    response.set_content(JsonLine().add("error", error).text(), kJsonType);
}

/// The port listens on loopback, but so does the browser: a page of another site could reach it.
/// It is refused by its origin; and by the host name, should it have pointed its own name here.
/// @return an empty text, or why the request is refused.
std::string foreignPage(const httplib::Request& request) {
    // A port that is forwarded has another number outside, so only the name counts.
    const std::string host = request.get_header_value("Host");
    const std::string name = host.substr(0, host.find(':'));
    if (name != "127.0.0.1" && name != "localhost") {
        return "the host must be 127.0.0.1 or localhost, not " + inQuotes(host);
    }
    if (request.get_header_value_count("Host") != 1 ||
        request.get_header_value_count("Origin") > 1) {
        return "there must be one host and one origin";
    }
    const std::string origin = request.get_header_value("Origin");
    if (request.has_header("Origin") && origin != "http://" + host) {
        return "a page of another site may not do that: " + inQuotes(origin);
    }
    return {};
}

/// "'a', 'b' or 'c'"
std::string listOf(const std::vector<std::string>& names) {
    std::string list = inQuotes(names.front());
    for (size_t i = 1; i < names.size(); ++i) {
        list += (i + 1 == names.size() ? " or " : ", ") + inQuotes(names[i]);
    }
    return list;
}

} // namespace

PostedJson::PostedJson(const std::string& text) {
    // Iterative: a hostile body must not decide how deep the stack grows.
    mDocument.Parse<rapidjson::kParseIterativeFlag>(text.data(), text.size());
    if (mDocument.HasParseError()) {
        throw Refusal(400, std::string("the body is not JSON: ") +
                               rapidjson::GetParseError_En(mDocument.GetParseError()));
    }
    if (!mDocument.IsObject()) {
        throw Refusal(400, "the body is not a JSON object");
    }
}

std::string PostedJson::text(const char* name) const {
    const auto member = mDocument.FindMember(name);
    if (member == mDocument.MemberEnd()) {
        return {};
    }
    if (!member->value.IsString()) {
        throw Refusal(400, std::string(name) + " is " + kindOf(member->value) +
                               " where a string was expected");
    }
    return textOf(member->value);
}

int PostedJson::number(const char* name, int min, int max, int missing) const {
    const auto member = mDocument.FindMember(name);
    if (member == mDocument.MemberEnd()) {
        return missing;
    }
    const auto& value = member->value;
    if (!value.IsInt() || value.GetInt() < min || value.GetInt() > max) {
        throw Refusal(400, std::string(name) + " is not a number from " + std::to_string(min) +
                               " to " + std::to_string(max));
    }
    return value.GetInt();
}

size_t PostedJson::choice(const char* name, const std::vector<std::string>& names,
                          bool mayMiss) const {
    if (mayMiss && !has(name)) {
        return 0;
    }
    const std::string chosen = text(name);
    const auto found = std::find(names.begin(), names.end(), chosen);
    if (found == names.end()) {
        throw Refusal(400, std::string(name) + " is " + inQuotes(chosen) + " where " +
                               listOf(names) + " was expected");
    }
    return static_cast<size_t>(found - names.begin());
}

void PostedJson::allowOnly(const std::vector<std::string>& names) const {
    // Not by GetObject(): Windows has a macro of that name.
    for (auto member = mDocument.MemberBegin(); member != mDocument.MemberEnd(); ++member) {
        const std::string name = textOf(member->name);
        if (std::find(names.begin(), names.end(), name) == names.end()) {
            throw Refusal(400, "unknown member " + inQuotes(name));
        }
    }
}

void installControlPort(httplib::Server& server) {
    using httplib::Request;
    using httplib::Response;
    server.set_pre_routing_handler([](const Request& request, Response& response) {
        const std::string refusal = foreignPage(request);
        if (refusal.empty()) {
            return httplib::Server::HandlerResponse::Unhandled;
        }
        answerError(response, 403, refusal);
        return httplib::Server::HandlerResponse::Handled;
    });
    server.set_exception_handler(
        [](const Request&, Response& response, const std::exception_ptr& thrown) {
            try {
                std::rethrow_exception(thrown);
            } catch (const Refusal& refusal) {
                answerError(response, refusal.status(), refusal.what());
            } catch (const std::exception& error) {
                answerError(response, 500, error.what());
            }
        });
    server.set_error_handler([](const Request& request, Response& response) {
        if (response.body.empty()) {
            answerError(response, response.status,
                        "no such operation: " + request.method + " " + request.path);
        }
    });
    server.Get("/health", [](const Request&, Response& response) {
        response.set_content("ok", "text/plain");
    });
}

void onGet(httplib::Server& server, const char* path, const GetHandler& handler) {
    server.Get(path, [handler](const httplib::Request& request, httplib::Response& response) {
        response.set_content(handler(request), kJsonType);
    });
}

void onPost(httplib::Server& server, const char* path, const PostHandler& handler) {
    server.Post(path, [handler](const httplib::Request& request, httplib::Response& response,
                                const httplib::ContentReader& reader) {
        const auto body = readBody(request, reader);
        if (!body) {
            throw Refusal(400, "the body cannot be read");
        }
        response.set_content(handler(request, *body), kJsonType);
    });
}

void onJson(httplib::Server& server, const char* path, const JsonHandler& handler) {
    onPost(server, path, [handler](const httplib::Request& request, const std::string& body) {
        const std::string type = request.get_header_value("Content-Type");
        if (type.substr(0, type.find_first_of("; ")) != kJsonType) {
            throw Refusal(415, "the content type must be application/json");
        }
        return handler(request, PostedJson(body));
    });
}

} // namespace vesk::backend
