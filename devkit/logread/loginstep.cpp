#include "loginstep.h"

#include <algorithm>

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
    std::string_view detail;
};

constexpr Row kRows[] = {
    {"VESKLoginManager::Login", "] Login", Kind::begin, "request", ""},
    {"VESKLoginManager::AutoLogin", "begin autologin", Kind::begin, "automatic request", ""},
    {"VESKLoginManager::GetLoginPreCode", "", Kind::middle, "pre-code asked for", ""},
    {"VESKLoginManager::OnPreCodeResp", "OnPreCodeResp ret:0,", Kind::middle,
     "pre-code answer: ret ", "\"ret\":"},
    {"VESKLoginManager::OnPreCodeResp", "OnPreCodeResp ret:", Kind::middle,
     "no pre-code answer: result ", "OnPreCodeResp ret:"},
    {"VESKLoginIMPL::LoginChannel", ", channel:", Kind::middle, "channel starts", ""},
    {"VESKLoginIMPL::PluginAutoLogin", ", channel:", Kind::middle, "channel starts", ""},
    {"VESKLogin::QrCodeRetObserver", "will notify user", Kind::middle, "QR code shown", ""},
    {"VESKLogin::QrCodeRetObserver", "observer is null", Kind::middle,
     "QR code not shown: no observer", ""},
    {"VESKFRWrapper::login_resp", "Qrcode was scaned", Kind::middle, "QR code scanned", ""},
    {"VESKKZWrapper::OnKZOpenSDKCallback", "OpenSDK_QrScanResult_", Kind::middle,
     "QR code is: ", "OpenSDK_QrScanResult_"},
    {"VESKLoginManager::PluginLoginObserver", " ], {", Kind::middle, "plugin answer", ""},
    {"VESKLoginManager::PluginLoginObserver", "is not equal", Kind::drop,
     "superseded by a newer login", ""},
    {"VESKLoginManager::PluginLoginObserver", " url: ", Kind::middle, "backend asked", ""},
    {"::ConvertLoginRet", ", respBody:{", Kind::middle, "backend answer: ret ", "\"ret\":"},
    {"::ConvertLoginRet", ", respBody:", Kind::middle, "backend answer: nothing usable", ""},
    {"VESKLogin::LoginRetObserver", "will notify user", Kind::deliver, "delivery", ""},
    {"VESKLogin::LoginRetObserver", "observer is null", Kind::drop,
     "not delivered: no observer, or not the current login", ""},
};

/// Errors of these belong to the login that is under way.
constexpr std::string_view kComponents[] = {
    "VESKFRWrapper::", "VESKKZWrapper::",  "VESKLoginFerno::",
    "VESKLoginKZ::",   "VESKLoginSteam::", "VESKSteamWrapper::"};

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

bool holds(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// What stands behind the last `part`, up to one of `ends`.
std::string valueBehind(std::string_view text, std::string_view part, std::string_view ends) {
    const size_t at = text.rfind(part);
    if (at == std::string_view::npos) {
        return {};
    }
    const std::string_view rest = text.substr(at + part.size());
    return std::string(rest.substr(0, rest.find_first_of(ends)));
}

/// The id in "[ 1106-...-1 ] ...", or nothing.
std::string sequenceId(std::string_view message) {
    const size_t at = message.find("[ ");
    return at > 1 ? std::string() : valueBehind(message.substr(0, message.find(']')), "[ ", " ");
}

LoginStep step(const Row& row, const LogRecord& record) {
    LoginStep step;
    step.kind = row.kind;
    step.words = row.words;
    step.sequenceId = sequenceId(record.message);
    if (!row.detail.empty()) {
        const std::string value = valueBehind(record.message, row.detail, " ,}\n");
        step.words.append(value.empty() ? "none" : value);
    }
    if (row.part == ", channel:") {
        step.channel = valueBehind(record.message, row.part, " \n");
    }
    return step;
}

} // namespace

std::optional<LoginStep> readLoginStep(const LogRecord& record) {
    for (const Row& row : kRows) {
        if (endsWith(record.method, row.method) && holds(record.message, row.part)) {
            return step(row, record);
        }
    }
    const bool isComponent =
        std::any_of(std::begin(kComponents), std::end(kComponents),
                    [&](std::string_view name) { return holds(record.method, name); });
    if (record.level == 'E' && isComponent) {
        LoginStep error;
        error.words.append("error: ").append(record.message);
        return error;
    }
    return std::nullopt;
}

std::optional<std::string> readRequestedChannel(const LogRecord& record) {
    if (!endsWith(record.method, "VESKLogin::Login") || !holds(record.message, " permissions:")) {
        return std::nullopt;
    }
    return valueBehind(record.message.substr(0, record.message.find(" permissions:")),
                       "channel:", "\n");
}

} // namespace vesk::logread
