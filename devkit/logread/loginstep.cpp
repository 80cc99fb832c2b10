#include <algorithm>
#include <charconv>

#include "common/resultcodes.h"
#include "loginstory.h"

namespace vesk::logread {

namespace {

using Kind = LoginStep::Kind;

/// A record is known by its method and by what its message holds; the first row that fits counts.
struct Row {
    std::string_view method;
    std::string_view part;
    Kind kind;
    std::string_view words;
    /// Behind this in the message stands a value worth showing, up to a blank or a comma.
    std::string_view detail = {};
    /// 0: does not decide what the game is told.
    int64_t retCode = 0;
    /// What to do when the login ends with this step.
    std::string_view remedy = {};
    /// A transport's detail stands in its place, unless that is 0.
    int64_t thirdCode = devkit::Advice::kNobody;
};

constexpr std::string_view kMessengerFile =
    "put the messenger's component beside the SDK, the 64-bit one, with all that it needs itself";
constexpr std::string_view kSteamFile =
    "put Steam's own steam_api64.dll beside the SDK, the 64-bit one";

constexpr std::string_view kNoAnswer = "the log ends, or the game did, before the backend's answer";
constexpr std::string_view kSilent = "the component says nothing: give each login a time limit";

constexpr Row kRows[] = {
    {"VESKLogin::Login", " permissions:", Kind::request, ""},
    {"VESKLoginManager::Login", "] Login", Kind::begin, "request", "", 0,
     "channels are named KZ, Ferno and Steam, exactly so"},
    {"VESKLoginManager::AutoLogin", "begin autologin", Kind::begin, "automatic request"},
    {"VESKLoginManager::AutoLogin", "Auto login only", Kind::middle, "refused", "", 7},
    {"VESKLoginManager::AutoLogin", "loginret invalid", Kind::middle, "no player known", "", 1001},
    {"VESKLoginManager::GetLoginPreCode", "", Kind::middle, "pre-code asked for", "", 0, kNoAnswer},
    {"VESKLoginManager::OnPreCodeResp", "is not equal", Kind::drop, "superseded by a newer login"},
    {"VESKLoginManager::OnPreCodeResp", "OnPreCodeResp ret:", Kind::answer, "pre-code answer"},
    {"VESKLoginManager::OnPreCodeResp", "No preCode!", Kind::failure, "no pre-code in it", "", 5,
     "", 0},
    {"VESKLoginIMPL::LoginChannel", ", channel:", Kind::middle, "channel starts", "", 0, kSilent},
    {"VESKLoginIMPL::PluginAutoLogin", ", channel:", Kind::middle, "channel starts", "", 0,
     kSilent},
    {"VESKLogin::QrCodeRetObserver", "will notify user", Kind::middle, "QR code shown", "", 0,
     "the player has to scan the code before it expires"},
    {"VESKLogin::QrCodeRetObserver", "observer is null", Kind::middle,
     "QR code not shown: no observer"},
    {"VESKFRWrapper::login_resp", "Qrcode was scaned", Kind::middle, "QR code scanned", "", 0,
     "the player has to confirm the login"},
    {"VESKKZWrapper::OnKZOpenSDKCallback", "OpenSDK_QrScanResult_", Kind::middle,
     "QR code is: ", "OpenSDK_QrScanResult_"},
    {"VESKKZWrapper::InitializeOpenSDK", "Create OpenSDK instance failed", Kind::failure,
     "KZOpenSDK.dll cannot be loaded", "", 9999, kMessengerFile},
    {"VESKKZWrapper::InitializeOpenSDK", "Init OpenSDK failed", Kind::failure,
     "KZOpenSDK.dll does not start", "", 9999,
     "put KZOpenSDK.dll beside the SDK; look at KZ_APP_ID and KZ_APP_KEY"},
    {"VESKKZWrapper::StartQrCodeLogin", "LoginByQRCode failed", Kind::failure,
     "KZOpenSDK.dll refuses to show a code", "", 9999, "look at KZ_APP_ID and KZ_APP_KEY"},
    {"VESKKZWrapper::OnKZOpenSDKCallback", "QrScanResult had logined", Kind::failure,
     "the player is logged in to KZ already", "", 0, "the player has to log out in KZ"},
    {"VESKLoginKZ::AnswerWithoutEvents", "Advise failed: ", Kind::failure,
     "KZOpenSDK.dll refuses the SDK as a listener: ", "Advise failed: ", 17,
     "ask the component's maker: docs/kz-component.md"},
    {"", "Load frlogin.dll failed", Kind::failure, "frlogin.dll cannot be loaded", "", 9999,
     kMessengerFile},
    {"VESKFRWrapper::Login", "Not found function ", Kind::failure, "frlogin.dll has no function ",
     "Not found function ", 9999, kMessengerFile},
    {"VESKSteamWrapper::InitSteamApi", "Load steam_api64.dll failed", Kind::failure,
     "steam_api64.dll cannot be loaded", "", 17, kSteamFile},
    {"VESKSteamWrapper::InitSteamApi", "Get SteamAPI_Init func failed", Kind::failure,
     "steam_api64.dll is no library of Steam's", "", 17, kSteamFile},
    {"VESKSteamWrapper::InitSteamApi", "restart from Steam Client", Kind::failure,
     "Steam wants to start the game itself", "", 17,
     "end the game, Steam starts it anew; while developing leave STEAM_APP_ID empty"},
    {"VESKSteamWrapper::InitSteamApi", "Client is running:0", Kind::failure,
     "the Steam client does not run", "", 17, "start Steam"},
    {"VESKSteamWrapper::InitSteamApi", "Init Steam SDK result:0", Kind::failure,
     "Steam does not start", "", 17,
     "start Steam with an account that owns the app; steam_appid.txt belongs beside the game"},
    {"VESKLoginManager::PluginLoginObserver", " ], {", Kind::middle, "plugin answer"},
    {"VESKLoginManager::PluginLoginObserver", "is not equal", Kind::drop,
     "superseded by a newer login"},
    {"VESKLoginManager::PluginLoginObserver", " url: ", Kind::middle, "backend asked", "", 0,
     kNoAnswer},
    {"VESKHTTPClient::SendPostRequest", "return retcode:", Kind::transport, "", "retcode:", 4, "",
     0},
    {"::OnHTTPClientCallBack", "responseCode: ", Kind::transport, "", "responseCode: ", 4, "", 833},
    {"VESKHTTPManager::RunRequest", "req timeout!", Kind::transport, "", "", 4, "", 4},
    {"VESKHTTPManager::RunRequest", "http request fail", Kind::transport, "", "", 4, "", 2},
    {"::ConvertLoginRet", ", respBody:", Kind::answer, "backend answer"},
    {"VESKJsonReader::init", "Parse json string [", Kind::unusable, "", "", 5, "", 0},
    {"VESKJsonReader::init", "value = NULL", Kind::unusable, "", "", 5, "", 0},
    {"VESKLoginManager::OnPreCodeResp", "inside an answer", Kind::failure, "memory ran out", "", 4,
     "", 27},
    {"VESKLoginManager::OnLoginResp", "inside an answer", Kind::failure, "memory ran out", "", 4,
     "", 27},
    {"VESKLogin::LoginRetObserver", "will notify user", Kind::deliver, "result delivered"},
    {"VESKLogin::LoginRetObserver", "observer is null", Kind::drop,
     "not delivered: no observer, or not the current login"},
};

/// Errors of these belong to the login that is under way.
constexpr std::string_view kComponents[] = {
    "VESKFRWrapper::", "VESKKZWrapper::",  "VESKLoginFerno::",
    "VESKLoginKZ::",   "VESKLoginSteam::", "VESKSteamWrapper::"};

/// The product's namespaces stand before the name.
bool isMethod(std::string_view method, std::string_view name) {
    return method.size() >= name.size() && method.substr(method.size() - name.size()) == name;
}

bool holds(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

std::string_view behind(std::string_view text, std::string_view part) {
    const size_t at = text.find(part);
    return at == std::string_view::npos ? std::string_view() : text.substr(at + part.size());
}

/// What stands behind `part`, up to one of `ends`.
std::string valueBehind(std::string_view text, std::string_view part, std::string_view ends) {
    const std::string_view rest = behind(text, part);
    return std::string(rest.substr(0, rest.find_first_of(ends)));
}

std::optional<int64_t> numberBehind(std::string_view text, std::string_view part) {
    const std::string digits = valueBehind(text, part, " ,}]\r\n");
    int64_t value = 0;
    const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return end.ptr == digits.data() ? std::nullopt : std::optional<int64_t>(value);
}

/// The id in "[ 1106-...-1 ] ...", or in an address; or nothing.
std::string sequenceId(std::string_view message) {
    std::string inAddress = valueBehind(message, "&seq=", "& ,");
    if (!inAddress.empty()) {
        return inAddress;
    }
    const size_t at = message.find("[ ");
    return at > 1 ? std::string() : valueBehind(message.substr(0, message.find(']')), "[ ", " ");
}

/// A member of the backend's answer, which may break off anywhere and have blanks after a colon.
std::string_view member(std::string_view body, std::string_view name) {
    std::string_view value = behind(body, std::string("\"").append(name).append("\""));
    value.remove_prefix(std::min(value.find_first_not_of(" \t\r\n:"), value.size()));
    return value;
}

/// Reads an answer of the backend, and what the transport says of it.
void readAnswer(const LogRecord& record, LoginStep& step) {
    const std::string_view body = behind(record.message, ", respBody:");
    const int64_t transport = numberBehind(record.message, "OnPreCodeResp ret:").value_or(0);
    const bool isPreCode = holds(record.message, "OnPreCodeResp ret:");
    if (transport != 0) {
        step.words.insert(0, "no ");
        step.codes = {4, transport};
    } else if (body.empty() || body[0] != '{') {
        step.words.append(body.empty() && !record.cut ? ": empty" : ": no JSON");
        step.codes = {5, isPreCode ? devkit::Advice::kNobody : 0};
    } else {
        const int64_t ret = numberBehind(member(body, "ret"), "").value_or(devkit::Advice::kNobody);
        const bool realName = member(body, "need_name_auth").substr(0, 4) == "true";
        step.words.append(": ret ").append(std::to_string(ret));
        step.codes = {ret != 0 ? 5 : realName ? 20 : 0, ret};
        const std::string_view message = member(body, "msg");
        if (!message.empty() && message[0] == '"') {
            step.message = valueBehind(message, "\"", "\"");
        }
    }
}

LoginStep makeStep(const Row& row, const LogRecord& record) {
    LoginStep step;
    step.kind = row.kind;
    step.words = row.words;
    step.remedy = row.remedy;
    step.sequenceId = sequenceId(record.message);
    if (row.retCode != 0) {
        step.codes = {row.retCode, row.thirdCode};
    }
    if (row.kind == Kind::answer) {
        readAnswer(record, step);
    } else if (row.kind == Kind::transport) {
        const auto said = row.detail.empty() ? 0 : numberBehind(record.message, row.detail);
        step.codes->thirdCode = said.value_or(0) == 0 ? row.thirdCode : *said;
    } else if (!row.detail.empty()) {
        step.words.append(valueBehind(record.message, row.detail, " ,}\n"));
    }
    if (row.part == ", channel:") {
        step.channel = valueBehind(record.message, row.part, " \n");
    } else if (row.kind == Kind::request) { // whatever was asked for, blanks in it too
        step.channel =
            valueBehind(record.message.substr(0, record.message.find(row.part)), "channel:", "\n");
    }
    return step;
}

} // namespace

std::optional<LoginStep> readLoginStep(const LogRecord& record) {
    for (const Row& row : kRows) {
        if (isMethod(record.method, row.method) && holds(record.message, row.part)) {
            return makeStep(row, record);
        }
    }
    const bool isComponent =
        std::any_of(std::begin(kComponents), std::end(kComponents),
                    [&](std::string_view name) { return holds(record.method, name); });
    if (record.level == 'E' && isComponent) {
        LoginStep error;
        error.kind = Kind::failure;
        error.words = record.message;
        return error;
    }
    return std::nullopt;
}

} // namespace vesk::logread
