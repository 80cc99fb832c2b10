// What a backend can answer that it should not.
#include "faults/faulttest.h"

namespace vesk::test {
namespace {

using std::to_string;

class AnswerFaults : public FaultTest {
protected:
    /// A login that is answered so; @return its code and third code as "5/-1".
    std::string outcome(const std::string& row, const Answer& answer) {
        SCOPED_TRACE(row);
        backend.next(answer);
        last = faulty(row, answer.path == "auth/pcprecode" ? "Ferno" : "Steam");
        return to_string(last.retCode) + "/" + to_string(last.thirdCode);
    }

    VESKLoginRet last;
};

TEST_F(AnswerFaults, BodyCutAtEveryByte) {
    settle();
    const struct {
        Answer whole;
        size_t step;
        const char* ended;
    } rows[] = {
        {loginAnswer("A", R"(,"user_name":"P\u00e4r","channel_info":{"a":[1]})"), VESK_FAULT_STEP,
         "5/0"},
        {{"auth/pcprecode", R"({"ret":0,"msg":"","precode":"p-1"})"}, 1, "5/-1"},
    };
    for (const auto& row : rows) {
        for (size_t size = 0; size < row.whole.body.size(); size += row.step) {
            // The bytes are missing, or the backend takes them for all.
            Answer cut = row.whole;
            cut.action = "cut";
            cut.more = R"(,"cut_at":)" + to_string(size);
            EXPECT_EQ(outcome("missing from byte " + to_string(size), cut), VESK_FAULT_CUT);
            Answer ended = row.whole;
            ended.body.resize(size);
            EXPECT_EQ(outcome("ends at byte " + to_string(size), ended), row.ended);
        }
    }
    expectWhole();
}

TEST_F(AnswerFaults, LogoutsAreHeardWhateverTheBackendSays) {
    settle();
    const Answer answers[] = {{"auth/logout", "gone", 404},
                              {"auth/logout", std::string(100000, '[')},
                              {"auth/logout", ""},
                              {"auth/logout", R"({"ret":0,"msg":"")"},
                              {"auth/logout", R"({"ret":"0"})"},
                              {"auth/logout", "x", 200, 0, "cut"},
                              {"auth/logout", "", 200, 0, "redirect", "https://localhost:1/"}};
    size_t asked = 0;
    for (const Answer& answer : answers) {
        backend.next(answer);
        EXPECT_EQ(logout().retCode, VESKError::SUCCESS) << answer.body;
        backend.waitForRequest("auth/logout", ++asked);
        EXPECT_EQ(faulty("login after " + answer.body.substr(0, 20)).retCode, VESKError::SUCCESS);
    }
    expectWhole();
}

struct Member {
    const char *name, *value, *fallback;
    std::string (*read)(const VESKLoginRet&); ///< null: the game does not get it as it is
};
using Ret = const VESKLoginRet&;
const Member kMembers[] = {
    {"ret", "0", "-1", [](Ret r) { return to_string(r.thirdCode); }},
    {"msg", "\"m\"", "", [](Ret r) { return r.thirdMsg; }},
    {"openid", "\"o\"", "", [](Ret r) { return r.openid; }},
    {"uid", "\"u\"", "", nullptr},
    {"token", "\"t\"", "", [](Ret r) { return r.token; }},
    {"token_expire_time", "4000000000", "0", [](Ret r) { return to_string(r.tokenExpire); }},
    {"first", "1", "0", [](Ret r) { return to_string(r.firstLogin); }},
    {"reg_channel_dis", "\"d\"", "", [](Ret r) { return r.regChannelDis; }},
    {"user_name", "\"n\"", "", [](Ret r) { return r.userName; }},
    {"gender", "2", "0", [](Ret r) { return to_string(r.gender); }},
    {"birthdate", "\"b\"", "", [](Ret r) { return r.birthdate; }},
    {"picture_url", "\"p\"", "", [](Ret r) { return r.pictureUrl; }},
    {"pf", "\"f\"", "", [](Ret r) { return r.pf; }},
    {"pf_key", "\"k\"", "", [](Ret r) { return r.pfKey; }},
    {"need_name_auth", "false", "0", [](Ret r) { return to_string(r.realNameAuth); }},
    {"channel_info", "{}", "", nullptr},
    {"seq", "\"s\"", "", nullptr},
};

/// A good answer in which @p changed has this value, or is missing.
std::string answerWith(const Member& changed, const std::string& value) {
    std::string body;
    for (const Member& member : kMembers) {
        const std::string text = &member == &changed ? value : member.value;
        if (!text.empty()) {
            body += (body.empty() ? "{\"" : ",\"") + std::string(member.name) + "\":" + text;
        }
    }
    return body + "}";
}

TEST_F(AnswerFaults, MembersMissingNullAndOfEveryWrongType) {
    settle();
    for (const Member& changed : kMembers) {
        const std::string good = changed.value;
        const bool isNumber = good[0] >= '0' && good[0] <= '9';
        for (const std::string value : {"", "null", "true", "-7", "1.5", "1e300", "\"x\"", "[0]",
                                        "{}", "1099511627776", "99999999999999999999"}) {
            const bool fits = value[0] == good[0] || (value == "true" && good == "false") ||
                              (isNumber && value == "-7") ||
                              (changed.fallback == std::string("0") && good.size() > 5 &&
                               value == "1099511627776");
            if (fits) {
                continue;
            }
            const std::string row = changed.name + std::string(" ") + value;
            const bool isRet = changed.name == std::string("ret");
            EXPECT_EQ(outcome(row, {"auth/login", answerWith(changed, value)}),
                      isRet ? "5/-1" : "0/0");
            for (const Member& member : kMembers) {
                std::string expected = member.value;
                if (&member == &changed) {
                    // Of what has members or elements, a text takes the JSON text.
                    const bool isJson = good[0] == '"' && (value[0] == '[' || value[0] == '{');
                    expected = isJson ? value : member.fallback;
                } else if (expected[0] == '"') {
                    expected = expected.substr(1, expected.size() - 2);
                } else if (expected == "false") {
                    expected = "0";
                }
                if (member.read != nullptr) {
                    EXPECT_EQ(member.read(last), expected) << row << ": " << member.name;
                }
            }
        }
    }
    expectWhole();
}

TEST_F(AnswerFaults, BodiesAndStatuses) {
    settle();
    const auto nested = [](int depth, const std::string& open, const std::string& close) {
        std::string text;
        for (int i = 0; i < 2 * depth; ++i) {
            text += i < depth ? open : close;
        }
        return text;
    };
    const std::string good = loginAnswer("A").body;
    const std::string start = good.substr(0, good.size() - 1);
    const std::string half = good.substr(0, good.size() / 2);
    const std::string limit(size_t{4} << 20, ' ');
    using namespace std::string_literals;
    const struct {
        const char* row;
        std::string outcome, body, more;
        int status = 200;
    } rows[] = {
        {"16,384 deep", "5/0", nested(16384, "[", "]"), ""},
        {"16,384 deep, open", "5/0", nested(16384, "[", ""), ""},
        {"100,000 objects deep", "5/0", nested(100000, "{\"a\":", "}"), ""},
        {"deep in a member", "5/0", start + ",\"channel_info\":" + nested(100000, "[", "]") + "}",
         ""},
        {"bytes that are no text", "5/0", "\xff\xfe\x80\xc0", ""},
        {"a text that is no UTF-8", "0/0", start + ",\"user_name\":\"\xff\xc0\x80\"}", ""},
        {"half a surrogate pair", "5/0", start + R"(,"user_name":"\ud800"})", ""},
        {"UTF-16", "5/0", "{\0\"\0r\0e\0t\0\"\0:\0000\0}\0"s, ""},
        {"a byte order mark", "0/0", "\xef\xbb\xbf" + good, ""},
        {"two answers", "5/0", good, R"(,"repeat":2)"},
        {"shorter than sent", "5/0", good, R"(,"announce":)" + to_string(half.size())},
        {"longer than sent", VESK_FAULT_CUT, good, R"(,"announce":5000)"},
        {"two halves", "5/0", half, R"(,"repeat":2)"},
        {"nothing", "5/-1", "null", ""},
        {"a number", "5/0", "7", ""},
        {"4 MiB", "0/0", limit.substr(good.size()) + good, ""},
        {"4 MiB and one byte", "4/23", limit.substr(good.size() - 1) + good, ""},
        {"200 MB announced", "4/23", limit.substr(0, 65536),
         R"(,"repeat":3200,"announce":209715200)"},
        {"200 MB", "4/23", limit.substr(0, 65536), R"(,"repeat":3200)"},
        {"without \"ret\"", "5/-1", R"({"openid":"o"})", ""},
        {"refused", "5/1001", R"({"ret":1001,"msg":"no"})", ""},
        {"a real name is wanted", "20/0", start + R"(,"need_name_auth":true})", ""},
        {"no content", "5/0", "", "", 204},
        {"no content, but a body", "5/0", good, "", 204},
        {"not found", "4/404", good, "", 404},
        {"a status of nobody", "4/599", good, "", 599},
        {"not modified", "4/304", "", "", 304},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(outcome(row.row, {"auth/login", row.body, row.status, 0, "answer", "", row.more}),
                  row.outcome)
            << row.row;
        const bool isNothing = row.body.empty() || row.status == 204;
        EXPECT_EQ(last.retMsg, row.outcome == "0/0"    ? "Success"
                               : row.outcome == "20/0" ? "Need real name auth"
                               : row.outcome[0] == '4' ? "CURLCode for more details"
                               : row.outcome != "5/0"  ? "Server Error"
                               : isNothing             ? "resp body empty"
                                                       : "Parse respBody error");
        VESKLoginRet held;
        EXPECT_EQ(VESKLogin::GetLoginRet(held), row.outcome == "0/0") << row.row;
        EXPECT_EQ(held.retCode, row.outcome == "0/0" ? 0 : VESKError::NO_STORED_LOGIN) << row.row;
        EXPECT_EQ(last.methodNameID, kMethodNameLogin) << row.row;
    }
    expectWhole();
    expectBoundedMemory();
}

TEST_F(AnswerFaults, Redirects) {
    // Neither capitals nor a missing slash make an address less secure.
    std::string spelled = environment("VESK_TEST_BACKEND_URL");
    game.configure("VESK_URL=" + spelled.replace(0, 8, "hTTPs:/"));
    settle();
    const std::string there = environment("VESK_TEST_BACKEND_URL") + "/v2/auth/login";
    std::string clear = backend.lineUrl() + "/v2/auth/login";
    clear.erase(4, 1);
    for (const int status : {301, 302, 303, 305, 306, 307, 308}) {
        const std::string name = to_string(status);
        const auto follow = [&](const std::string& to, const std::string& more) {
            return outcome(name + " to " + to, {"auth/login", "", status, 0, "redirect", to, more});
        };
        // The last one finds the request without its query, or a GET.
        EXPECT_EQ(follow(there, R"(,"times":20)"), status <= 303 ? "4/405" : "5/4001") << name;
        EXPECT_EQ(follow(clear, ""), "4/1") << name;
    }
    EXPECT_EQ(backend.lineConnections(), 0u) << "a body went out in the clear";
    const std::pair<std::string, const char*> rows[] = {
        {"https://localhost:1/", "4/7"},
        {"ftp://localhost/", "4/1"},
        {"dict://localhost/x", "4/1"},
        {"https://[", "4/3"},
        {"https://localhost:99999/", "4/3"},
        // No name server is asked for a label that is too long.
        {"https://aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa/", "4/6"},
    };
    for (const auto& [to, expected] : rows) {
        EXPECT_EQ(outcome(to, {"auth/login", "", 307, 0, "redirect", to}), expected);
    }
    expectWhole();
}

} // namespace
} // namespace vesk::test
