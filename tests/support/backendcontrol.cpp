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

void BackendControl::next(const Answer& answer) {
    rapidjson::StringBuffer json;
    rapidjson::Writer<rapidjson::StringBuffer> writer(json);
    writer.StartObject();
    writer.Key("path");
    writer.String(answer.path.c_str());
    writer.Key("body");
    writer.String(answer.body.c_str());
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
    const std::string body = json.GetString();
    call("/next", &body);
}

std::vector<Request> BackendControl::requests(const std::string& path) {
    rapidjson::Document document;
    document.Parse(call("/requests", nullptr).c_str());
    std::vector<Request> found;
    for (const auto& item : document.GetArray()) {
        const Request request{item["path"].GetString(), item["query"].GetString(),
                              item["body"].GetString(), item["verdict"].GetString()};
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

std::string BackendControl::call(const std::string& path, const std::string* postBody) {
    std::string answer;
    const std::unique_ptr<CURL, void (*)(CURL*)> curl(curl_easy_init(), curl_easy_cleanup);
    curl_easy_setopt(curl.get(), CURLOPT_URL, (mUrl + path).c_str());
    curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, append);
    curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, &answer);
    curl_easy_setopt(curl.get(), CURLOPT_FAILONERROR, 1L);
    if (postBody != nullptr) {
        curl_easy_setopt(curl.get(), CURLOPT_POSTFIELDS, postBody->c_str());
    }
    if (curl_easy_perform(curl.get()) != CURLE_OK) {
        throw std::runtime_error("the dev backend's control port failed: " + path);
    }
    return answer;
}

} // namespace vesk::test
