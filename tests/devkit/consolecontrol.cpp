#include "devkit/consolecontrol.h"

#include <curl/curl.h>
#include <memory>
#include <rapidjson/document.h>
#include <stdexcept>

#include "support/waituntil.h"

namespace vesk::test {
namespace {

size_t append(char* data, size_t size, size_t count, void* text) {
    static_cast<std::string*>(text)->append(data, size * count);
    return size * count;
}

rapidjson::Document parsed(const std::string& json) {
    rapidjson::Document document;
    document.Parse(json.c_str());
    if (document.HasParseError()) {
        throw std::runtime_error("no JSON: " + json);
    }
    return document;
}

} // namespace

ControlAnswer ConsoleControl::get(const std::string& path,
                                  const std::vector<std::string>& headers) const {
    return call(path, nullptr, headers);
}

ControlAnswer ConsoleControl::post(const std::string& path, const std::string& json,
                                   const std::vector<std::string>& headers) const {
    std::vector<std::string> all = headers;
    if (headers.empty() || headers[0].find("Content-Type") != 0) {
        all.push_back("Content-Type: application/json");
    }
    return call(path, &json, all);
}

std::vector<Session> ConsoleControl::sessions() const {
    const rapidjson::Document document = parsed(get("/sessions").body);
    std::vector<Session> found;
    for (const auto& item : document.GetArray()) {
        Session session{item["id"].GetString(),
                        item["channel"].GetString(),
                        item["seq"].GetString(),
                        item["qrcode"].GetString(),
                        item["state"].GetString(),
                        item["live"].GetBool(),
                        {}};
        for (const auto& button : item["buttons"].GetArray()) {
            session.buttons.emplace_back(button.GetString());
        }
        found.push_back(session);
    }
    return found;
}

Session ConsoleControl::waitForSession(size_t count) const {
    std::vector<Session> found;
    waitUntil("a session at the console", [&] {
        found = sessions();
        return found.size() >= count;
    });
    return found.back();
}

void ConsoleControl::waitForState(const std::string& id, const std::string& state) const {
    waitUntil("the session to be " + state, [&] {
        for (const Session& session : sessions()) {
            if (session.id == id) {
                return session.state == state;
            }
        }
        return false;
    });
}

std::string ConsoleControl::begin(const std::string& channel, const std::string& more) const {
    const auto answer = post("/sessions", R"({"channel":")" + channel + "\"" + more + "}");
    return parsed(answer.body)["id"].GetString();
}

long ConsoleControl::press(const std::string& id, const std::string& button,
                           const std::string& more) const {
    return post("/sessions/" + id + "/press", R"({"button":")" + button + "\"" + more + "}").status;
}

ControlAnswer ConsoleControl::call(const std::string& path, const std::string* body,
                                   const std::vector<std::string>& headers) const {
    ControlAnswer answer;
    curl_slist* list = nullptr;
    for (const std::string& header : headers) {
        list = curl_slist_append(list, header.c_str());
    }
    const std::unique_ptr<CURL, void (*)(CURL*)> curl(curl_easy_init(), curl_easy_cleanup);
    curl_easy_setopt(curl.get(), CURLOPT_URL, (mUrl + path).c_str());
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
        throw std::runtime_error(path + ": " + curl_easy_strerror(code));
    }
    return answer;
}

} // namespace vesk::test
