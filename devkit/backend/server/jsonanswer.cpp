#include "server/jsonanswer.h"

#include "server/httpserver.h"
#include "server/jsonmembers.h"
#include "server/jsontext.h"

namespace vesk::backend {

namespace {

bool isJsonType(const std::string& contentType) {
    const std::string type = contentType.substr(0, contentType.find_first_of("; "));
    return type == kJsonType;
}

} // namespace

void answerError(httplib::Response& response, int status, const std::string& error) {
    rapidjson::StringBuffer buffer;
    JsonWriter writer(buffer);
    writer.StartObject();
    writeMember(writer, "error", error);
    writer.EndObject();
    response.status = status;
    response.set_content(buffer.GetString(), buffer.GetSize(), kJsonType);
}

bool readJsonObject(const httplib::Request& request, const httplib::ContentReader& reader,
                    rapidjson::Document& document, httplib::Response& response) {
    std::string body;
    const bool isRead = readBody(request, reader, body);
    if (!isJsonType(request.get_header_value("Content-Type"))) {
        answerError(response, 415, "the content type must be application/json");
        return false;
    }
    document.Parse<rapidjson::kParseIterativeFlag>(body.data(), body.size());
    if (!isRead || document.HasParseError() || !document.IsObject()) {
        answerError(response, 400, "the body is not a JSON object");
        return false;
    }
    return true;
}

std::string textMember(const rapidjson::Value& object, const char* name) {
    const auto member = object.FindMember(name);
    return member != object.MemberEnd() && member->value.IsString() ? textOf(member->value)
                                                                    : std::string();
}

} // namespace vesk::backend
