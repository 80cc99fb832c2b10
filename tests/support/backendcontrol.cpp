#include "backendcontrol.h"

#include <curl/curl.h>
#include <memory>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <stdexcept>

#include "waituntil.h"

namespace vesk::test {
namespace {

size_t append(char* data, size_t size, size_t count, void* text) {
    static_cast<std::string*>(text)->append(data, size * count);
    return size * count;
}

} // namespace

ControlAnswer callControlPort(const std::string& url, const std::string* body,
                              const std::vector<std::string>& headers) {
    ControlAnswer answer;
    curl_slist* list = nullptr;
    for (const std::string& header : headers) {
        list = curl_slist_append(list, header.c_str());
    }
    const std::unique_ptr<CURL, void (*)(CURL*)> curl(curl_easy_init(), curl_easy_cleanup);
    curl_easy_setopt(curl.get(), CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl.get(), CURLOPT_NOPROXY, "*");
    curl_easy_setopt(curl.get(), CURLOPT_TIMEOUT, 30L);
    curl_easy_setopt(curl.get(), CURLOPT_HTTPHEADER, list);
    curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, append);
    curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, &answer.body);
    if (body != nullptr) {
        curl_easy_setopt(curl.get(), CURLOPT_POSTFIELDS, body->c_str());
    }
    const CURLcode code = curl_easy_perform(curl.get());
    curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &answer.status);
    curl_slist_free_all(list);
    if (code != CURLE_OK) {
        throw std::runtime_error(url + ": " + curl_easy_strerror(code));
    }
    return answer;
}

void BackendControl::next(const Answer& answer) {
    rapidjson::StringBuffer json;
    rapidjson::Writer<rapidjson::StringBuffer> writer(json);
    writer.StartObject();
    writer.Key("path");
    writer.String(answer.path.c_str());
    writer.Key("body");
    writer.String(answer.body.data(), static_cast<rapidjson::SizeType>(answer.body.size()));
    writer.Key("status");
    writer.Int(answer.status);
    writer.Key("delay_ms");
    writer.Int(answer.delayMs);
    writer.Key("action");
    writer.String(answer.action.c_str());
    if (!answer.location.empty()) {
        writer.Key("location");
        writer.String(answer.location.c_str());
    }
    writer.EndObject();
    std::string body = json.GetString();
    body.insert(body.size() - 1, answer.more);
    call("/next", &body);
}

void BackendControl::showCertificate(const std::string& kind) {
    const std::string body = R"({"kind":")" + kind + "\"}";
    call("/certificate", &body);
}

void BackendControl::conduct(const std::string& json) {
    if (!json.empty()) {
        call("/tls", &json);
    }
}

size_t BackendControl::resumedSessions() {
    return numberAt("/tls", "resumed");
}

std::string BackendControl::lineUrl() {
    rapidjson::Document document;
    document.Parse(call("/line", nullptr).c_str());
    return document["url"].GetString();
}

size_t BackendControl::lineConnections() {
    return numberAt("/line", "connections");
}

void BackendControl::breakLine(const std::string& action, size_t after, const std::string& from) {
    const std::string body = R"({"action":")" + action + R"(","from":")" + from + R"(","after":)" +
                             std::to_string(after) + "}";
    call("/line", &body);
}

void BackendControl::floodLine(const std::string& head, const std::string& wave) {
    rapidjson::StringBuffer json;
    rapidjson::Writer<rapidjson::StringBuffer> writer(json);
    writer.StartObject();
    for (const auto& [name, text] : {std::pair{"action", std::string("flood")},
                                     std::pair{"head", head}, std::pair{"wave", wave}}) {
        writer.Key(name);
        writer.String(text.c_str());
    }
    writer.EndObject();
    const std::string body = json.GetString();
    call("/line", &body);
}

void BackendControl::clear() {
    const std::string none;
    call("/clear", &none);
}

std::vector<Request> BackendControl::requests(const std::string& path) {
    rapidjson::Document document;
    document.Parse(call("/requests", nullptr).c_str());
    std::vector<Request> found;
    for (const auto& item : document.GetArray()) {
        rapidjson::StringBuffer headers;
        rapidjson::Writer<rapidjson::StringBuffer> writer(headers);
        item["headers"].Accept(writer);
        const Request request{item["path"].GetString(), item["query"].GetString(),
                              item["body"].GetString(), headers.GetString(),
                              item["verdict"].GetString()};
        if (request.path.find(path) != std::string::npos) {
            found.push_back(request);
        }
    }
    return found;
}

Request BackendControl::waitForRequest(const std::string& path, size_t count) {
    std::vector<Request> found;
    waitUntil("a request to " + path, [&] {
        found = requests(path);
        return found.size() >= count;
    });
    return found.back();
}

size_t BackendControl::numberAt(const std::string& path, const char* name) {
    rapidjson::Document document;
    document.Parse(call(path, nullptr).c_str());
    return document[name].GetUint();
}

std::string BackendControl::call(const std::string& path, const std::string* postBody) {
    const ControlAnswer answer =
        callControlPort(mUrl + path, postBody, {"Content-Type: application/json"});
    if (answer.status >= 400) {
        throw std::runtime_error("the dev backend's control port refuses: " + answer.body);
    }
    return answer.body;
}

} // namespace vesk::test
