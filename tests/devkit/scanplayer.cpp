#include "devkit/scanplayer.h"

#include <rapidjson/document.h>
#include <stdexcept>

#include "support/waituntil.h"

namespace vesk::test {
namespace {

rapidjson::Document parsed(const std::string& json) {
    rapidjson::Document document;
    document.Parse(json.c_str());
    if (document.HasParseError()) {
        throw std::runtime_error("no JSON: " + json);
    }
    return document;
}

} // namespace

ControlAnswer ScanPlayer::get(const std::string& path,
                              const std::vector<std::string>& headers) const {
    return callControlPort(mUrl + path, nullptr, headers);
}

ControlAnswer ScanPlayer::post(const std::string& path, const std::string& json,
                               const std::vector<std::string>& headers) const {
    std::vector<std::string> all = headers;
    if (headers.empty() || headers[0].find("Content-Type") != 0) {
        all.push_back("Content-Type: application/json");
    }
    return callControlPort(mUrl + path, &json, all);
}

std::vector<Session> ScanPlayer::sessions() const {
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

Session ScanPlayer::waitForSession(size_t count) const {
    std::vector<Session> found;
    waitUntil("a session on the scan page", [&] {
        found = sessions();
        return found.size() >= count;
    });
    return found.back();
}

void ScanPlayer::waitForState(const std::string& id, const std::string& state) const {
    waitUntil("the session to be " + state, [&] {
        for (const Session& session : sessions()) {
            if (session.id == id) {
                return session.state == state;
            }
        }
        return false;
    });
}

std::string ScanPlayer::begin(const std::string& channel, const std::string& more) const {
    const auto answer = post("/sessions", R"({"channel":")" + channel + "\"" + more + "}");
    return parsed(answer.body)["id"].GetString();
}

long ScanPlayer::press(const std::string& id, const std::string& button,
                       const std::string& more) const {
    return post("/sessions/" + id + "/press", R"({"button":")" + button + "\"" + more + "}").status;
}

} // namespace vesk::test
