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

std::string jsonOf(const rapidjson::Value& value) {
    rapidjson::StringBuffer json;
    rapidjson::Writer<rapidjson::StringBuffer> writer(json);
    value.Accept(writer);
    return json.GetString();
}

std::string quoted(const std::string& text) {
    return jsonOf(rapidjson::Value(
        rapidjson::StringRef(text.data(), static_cast<rapidjson::SizeType>(text.size()))));
}

rapidjson::Document parsed(const std::string& text) {
    rapidjson::Document document;
    document.Parse(text.c_str());
    return document;
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
    const std::string location =
        answer.location.empty() ? "" : R"(,"location":)" + quoted(answer.location);
    call("/next", R"({"path":)" + quoted(answer.path) + R"(,"body":)" + quoted(answer.body) +
                      R"(,"status":)" + std::to_string(answer.status) + R"(,"delay_ms":)" +
                      std::to_string(answer.delayMs) + R"(,"action":)" + quoted(answer.action) +
                      location + answer.more + "}");
}

void BackendControl::showCertificate(const std::string& kind) {
    call("/certificate", R"({"kind":)" + quoted(kind) + "}");
}

void BackendControl::conduct(const std::string& json) {
    if (!json.empty()) {
        call("/tls", json);
    }
}

size_t BackendControl::resumedSessions() {
    return parsed(call("/tls"))["resumed"].GetUint();
}

std::string BackendControl::lineUrl() {
    return parsed(call("/line"))["url"].GetString();
}

size_t BackendControl::lineConnections() {
    return parsed(call("/line"))["connections"].GetUint();
}

void BackendControl::breakLine(const std::string& action, size_t after, const std::string& from) {
    call("/line", R"({"action":)" + quoted(action) + R"(,"from":)" + quoted(from) + R"(,"after":)" +
                      std::to_string(after) + "}");
}

void BackendControl::floodLine(const std::string& head, const std::string& wave) {
    call("/line",
         R"({"action":"flood","head":)" + quoted(head) + R"(,"wave":)" + quoted(wave) + "}");
}

void BackendControl::clear() {
    call("/clear", "");
}

std::vector<Request> BackendControl::requests(const std::string& path) {
    const rapidjson::Document document = parsed(call("/requests"));
    std::vector<Request> found;
    for (const auto& item : document.GetArray()) {
        const Request request{item["path"].GetString(), item["query"].GetString(),
                              item["body"].GetString(), jsonOf(item["headers"]),
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

std::string BackendControl::call(const std::string& path, const std::optional<std::string>& body) {
    const ControlAnswer answer =
        callControlPort(mUrl + path, body ? &*body : nullptr, {"Content-Type: application/json"});
    if (answer.status >= 400) {
        throw std::runtime_error("the dev backend's control port refuses: " + answer.body);
    }
    return answer.body;
}

} // namespace vesk::test
