#include "devkit/scanpagetest.h"

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "support/waituntil.h"

namespace vesk::test {
namespace {

std::string textOf(const rapidjson::Value& value) {
    rapidjson::StringBuffer json;
    rapidjson::Writer<rapidjson::StringBuffer> writer(json);
    value.Accept(writer);
    return value.IsString() ? value.GetString() : json.GetString();
}

} // namespace

ControlAnswer ScanPlayer::get(const std::string& path, const std::string& header) const {
    return callControlPort(url + path, nullptr, {header});
}

ControlAnswer ScanPlayer::post(const std::string& path, const std::string& json,
                               const std::string& header, const std::string& type) const {
    return callControlPort(url + path, &json, {"Content-Type: " + type, header});
}

std::vector<Session> ScanPlayer::sessions() const {
    rapidjson::Document document;
    document.Parse(get("/sessions").body.c_str());
    std::vector<Session> found;
    for (const auto& item : document.GetArray()) {
        Session& session = found.emplace_back();
        for (const auto& member : item.GetObject()) {
            session[member.name.GetString()] = textOf(member.value);
        }
    }
    return found;
}

std::string ScanPlayer::waitForSession(size_t count) const {
    waitUntil("a session on the scan page", [&] { return sessions().size() >= count; });
    return newest("id");
}

void ScanPlayer::waitForState(const std::string& id, const std::string& state) const {
    waitUntil("the session to be " + state, [&] {
        for (const Session& session : sessions()) {
            if (session.at("id") == id) {
                return session.at("state") == state;
            }
        }
        return false;
    });
}

std::string ScanPlayer::begin(const std::string& channel) const {
    post("/sessions", R"({"channel":")" + channel + "\"}");
    return newest("id");
}

long ScanPlayer::press(const std::string& id, const std::string& button,
                       const std::string& more) const {
    return post("/sessions/" + id + "/press", R"({"button":")" + button + "\"" + more + "}").status;
}

std::string ScanPageTest::showCode(size_t count) {
    startLogin();
    observer.nextQrCode();
    return player.waitForSession(count);
}

void ScanPageTest::expectEachToFailALogin(const std::vector<Refusal>& refusals) {
    size_t count = 0;
    for (const Refusal& refusal : refusals) {
        const std::string id = showCode(++count);
        EXPECT_EQ(player.press(id, refusal.button, refusal.more), 200) << refusal.button;
        EXPECT_EQ(observer.nextLogin().ret.retCode, 9999) << refusal.button;
        EXPECT_EQ(game.logLines(refusal.logged), 1u) << refusal.button;
        EXPECT_EQ(player.newest("state"), refusal.state);
        EXPECT_EQ(player.newest("live"), "false") << refusal.button;
    }
    EXPECT_TRUE(backend.requests("auth/login").empty());
}

void ScanPageTest::expectUnInstallNotToWaitForThePlayer() {
    const std::string id = showCode();
    const auto begin = std::chrono::steady_clock::now();
    VESKLogin::UnInstall();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(1500));
    player.waitForState(id, "ended");
}

} // namespace vesk::test
