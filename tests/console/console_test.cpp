#include <algorithm>
#include <gmock/gmock.h>
#include <rapidjson/document.h>
#include <sstream>

#include "doctor/doctortest.h"
#include "qrblocks.h"
#include "support/backendcontrol.h"
#include "support/files.h"

namespace vesk::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// The console in a folder where logins succeed.
class ConsoleProgramTest : public DoctorTest {
protected:
    ConsoleProgramTest() { setLine("VESK_SDK_KEY = dev-key"); }

    ProgramRun console(const std::string& arguments) const {
        return runProgram(mFolder, "vesk-console", arguments);
    }
};

std::vector<std::string> events(const std::string& text) {
    std::vector<std::string> found;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        rapidjson::Document json;
        json.Parse<rapidjson::kParseValidateEncodingFlag>(line.c_str());
        found.emplace_back(json.HasParseError() ? "no JSON: " + line : json["event"].GetString());
    }
    return found;
}

TEST_F(ConsoleProgramTest, WrongCommandLineIsExplainedInOneSentence) {
    const std::vector<std::pair<const char*, const char*>> rows = {
        {"", "no word"},
        {"logni", "WORD: logni not in {login,"},
        {"login", "login needs --channel"},
        {"login --channel steam", "--channel: steam not in {KZ,Ferno,Steam}"},
        {"login --channel", "--channel: 1 required TEXT:{KZ,Ferno,Steam} missing"},
        {"status --timeout soon", "--timeout: Value soon not in range 1 to 86400"},
        {"status --timeout 0", "--timeout: Value 0 not in range 1"},
        {"status --soon", "not expected: --soon"},
        {"doctor login --channel KZ", "doctor stands alone"},
        {"status --offline", "--offline goes with doctor"},
        {"status --json --qr", "exclude each other"},
        {"help nix", "no such word"},
        {"status help", "WORD: help not in"},
    };
    for (const auto& [arguments, words] : rows) {
        const ProgramRun run = console(arguments);
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_THAT(run.err, HasSubstr(words));
        EXPECT_THAT(run.err, HasSubstr("See vesk-console --help"));
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    }
}

TEST_F(ConsoleProgramTest, HelpExplainsEachWordThatItNames) {
    const std::string general = console("--help").out;
    for (const char* word : {"login", "autologin", "status", "watch", "logout", "doctor", "help"}) {
        EXPECT_THAT(general, HasSubstr("\n  " + std::string(word) + " "));
        const ProgramRun run = console("help " + std::string(word));
        EXPECT_EQ(run.status, 0);
        EXPECT_THAT(run.out, HasSubstr("usage: vesk-console "));
        EXPECT_THAT(run.out, HasSubstr(word));
    }
    EXPECT_THAT(console("--version").out, HasSubstr("VESKCore 5.0.000.0005"));
}

TEST_F(ConsoleProgramTest, VisitAsJsonIsOneObjectALine) {
    const ProgramRun run = console("login status --json logout --channel Ferno --no-qr");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(events(run.err), ElementsAre("qrcode", "login", "status", "logout"));
}

TEST_F(ConsoleProgramTest, VisitForAPersonShowsNoToken) {
    const ProgramRun run = console("login status logout --channel Steam");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.err, HasSubstr("login: logged in by Steam, player \"Player "));
    EXPECT_THAT(run.err, HasSubstr("status: held is the login by Steam"));
    EXPECT_THAT(run.err, HasSubstr("logout: logged out"));
    BackendControl backend(environment("VESK_TEST_CONTROL_URL"));
    rapidjson::Document sent;
    sent.Parse(backend.waitForRequest("auth/logout").body.c_str());
    EXPECT_THAT(run.err, Not(HasSubstr(sent["token"].GetString())));
    EXPECT_THAT(console("status").err, HasSubstr("status: no login is held"));
}

TEST_F(ConsoleProgramTest, FailureSaysWhatTheBackendHasSaid) {
    setLine("VESK_SDK_KEY = another");
    const ProgramRun run = console("login --channel Steam");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err,
                HasSubstr("login: failed with code 5 (Server Error): the backend refused"));
    EXPECT_THAT(run.err,
                HasSubstr("The backend answered 4009, the request is refused, and says \""));
    EXPECT_THAT(run.err, HasSubstr("What to do: "));
    fs::remove(mFolder / "cacert.pem");
    EXPECT_THAT(console("login --channel Steam").err,
                HasSubstr("Libcurl reports 77, cacert.pem cannot be read. What to do: put"));
}

TEST_F(ConsoleProgramTest, BackendsTextDoesNotSteerTheTerminal) {
    BackendControl backend(environment("VESK_TEST_CONTROL_URL"));
    backend.next({"auth/login", R"({"ret":9,"msg":"a\u009b2Jb\u202ec\u001bd"})"});
    EXPECT_THAT(console("login --channel Steam").err, HasSubstr("says \"a?2Jb?c?d\""));
}

TEST_F(ConsoleProgramTest, PictureIsDrawnWhenItIsAskedFor) {
    const std::string control = environment("VESK_TEST_CONTROL_URL");
    const std::string channel = R"({"channel":"Ferno"})";
    rapidjson::Document session;
    session.Parse(
        callControlPort(control + "/sessions", &channel, {"Content-Type: application/json"})
            .body.c_str());
    const std::string address = session["picture"].GetString();
    write("ferno_sim.ini", "on_qrcode=20:qr:" + address + ",50:success");
    ProgramRun drawn = console("login --channel Ferno --qr");
    auto& text = drawn.err; // with a Windows program's line ends
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    EXPECT_THAT(text, HasSubstr(qrBlocks(callControlPort(address, nullptr).body, false) +
                                "qrcode: scan it with Ferno; its address: " + address + "\n"));
    for (const char* quiet : {"", " --no-qr"}) {
        const ProgramRun run = console("login --channel Ferno" + std::string(quiet));
        EXPECT_THAT(run.err, HasSubstr("its address: "));
        EXPECT_THAT(run.err, Not(HasSubstr("█")));
    }
    write("ferno_sim.ini", "on_qrcode=20:qr:" + control + "/qr/0.png,50:success");
    EXPECT_THAT(console("login --channel Ferno --qr").err,
                HasSubstr("not drawn: the picture does not come, HTTP response code said error"));
}

TEST_F(ConsoleProgramTest, DoctorSaysTheSameAsTheProgramOfThatName) {
    const ProgramRun word = console("doctor --offline");
    const ProgramRun program = runProgram(mFolder, "vesk-doctor", "--offline");
    EXPECT_EQ(word.status, 0) << word.err;
    EXPECT_EQ(word.err, program.out);
    fs::remove(mFolder / "cacert.pem");
    EXPECT_EQ(runProgram(mFolder, "vesk-doctor", "--offline").status, 1);
    const ProgramRun json = console("doctor --json");
    EXPECT_EQ(json.status, 1);
    EXPECT_GT(events(json.err).size(), 20u);
    EXPECT_EQ(events(json.err).back(), "sum");
    EXPECT_EQ(runProgram(mFolder, "vesk-doctor", "--ofline").status, 2);
}

} // namespace
} // namespace vesk::test
