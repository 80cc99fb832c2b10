#include "loginstory.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

#include "common/resultcodes.h"

namespace vesk::logread {

namespace {

using Kind = LoginStep::Kind;

/// Of "2026-11-24 13:53:09.383"; only the difference of two means something.
std::optional<int64_t> toMilliseconds(std::string_view time) {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, fraction = 0;
    if (std::sscanf(std::string(time).c_str(),
                    "%4d-%2d-%2d %2d:%2d:%2d.%3d", // NOLINT(cert-err34-c)
                    &year, &month, &day, &hour, &minute, &second, &fraction) != 7) {
        return std::nullopt;
    }
    std::tm local = {};
    local.tm_year = year - 1900;
    local.tm_mon = month - 1;
    local.tm_mday = day;
    local.tm_hour = hour;
    local.tm_min = minute;
    local.tm_sec = second;
    return int64_t{1000} * std::mktime(&local) + fraction;
}

void appendStep(std::string& out, int64_t sinceBegin, int64_t sinceLast, std::string_view words) {
    char times[64] = {};
    std::snprintf(times, sizeof times, "%10lld ms  %+9lld ms  ", static_cast<long long>(sinceBegin),
                  static_cast<long long>(sinceLast));
    out.append(times);
    appendPrintable(out, words);
    out.push_back('\n');
}

void appendLine(std::string& out, std::string_view topic, std::string_view text) {
    if (!text.empty()) {
        out.append("  ").append(topic);
        appendPrintable(out, text);
        out.push_back('\n');
    }
}

} // namespace

void LoginStory::take(const LogRecord& record) {
    std::optional<LoginStep> step = readLoginStep(record);
    if (step && step->kind == Kind::request) {
        mRequestedChannel = std::move(step->channel);
        return;
    }
    const std::optional<int64_t> at = step ? toMilliseconds(record.time) : std::nullopt;
    if (!at) {
        return;
    }
    if (step->kind == Kind::begin && !step->sequenceId.empty()) {
        Login login;
        login.sequenceId = step->sequenceId;
        login.channel = std::move(mRequestedChannel);
        login.time = record.time;
        mLogins.push_back(std::move(login));
        mRequestedChannel.clear();
    }
    Login* login = find(step->sequenceId);
    if (login == nullptr) {
        return; // It began before this log, or it is a logout or a token refresh.
    }
    if (!step->channel.empty()) {
        login->channel = step->channel;
    }
    if (!login->delivered) {
        learn(*login, *step);
    }
    const bool isStep = step->kind != Kind::transport && step->kind != Kind::unusable;
    // A component that cannot be loaded is told by each function that it was to be loaded for.
    if (isStep && (login->steps.empty() || login->steps.back().words != step->words)) {
        login->steps.push_back({*at, std::move(step->words)});
    }
    login->delivered |= step->kind == Kind::deliver;
    login->dropped |= step->kind == Kind::drop;
}

/// Without an id: the newest login, as long as it is under way.
LoginStory::Login* LoginStory::find(const std::string& sequenceId) {
    if (sequenceId.empty()) {
        const bool underWay =
            !mLogins.empty() && !mLogins.back().delivered && !mLogins.back().dropped;
        return underWay ? &mLogins.back() : nullptr;
    }
    const auto found = std::find_if(mLogins.rbegin(), mLogins.rend(), [&](const Login& login) {
        return login.sequenceId == sequenceId;
    });
    return found == mLogins.rend() ? nullptr : &*found;
}

/// What the step says about the way in which the login will end.
void LoginStory::learn(Login& login, LoginStep& step) {
    switch (step.kind) {
    case Kind::begin:
    case Kind::middle:
        login.codes = step.codes;
        login.remedy = step.remedy;
        login.failure.clear();
        login.transport = 0;
        break;
    case Kind::answer:
        login.codes = step.codes;
        login.remedy.clear();
        login.message = step.message;
        if (login.transport != 0) {
            step.words = step.words.rfind("no ", 0) == 0 ? step.words : "no backend answer";
            login.codes = ResultCodes{4, login.transport};
        }
        break;
    case Kind::failure:
        // The first one that somebody can mend is the cause of the others.
        if (login.failure.empty() || login.remedy.empty()) {
            login.failure = step.words;
            login.remedy = step.remedy;
            login.codes = step.codes ? step.codes : login.codes;
        }
        break;
    case Kind::transport:
        if (step.codes->thirdCode != 0) {
            login.transport = step.codes->thirdCode;
        }
        break;
    case Kind::unusable:
        if (login.codes && !login.steps.empty()) {
            const bool isPreCode = login.steps.back().words.rfind("pre-code", 0) == 0;
            login.codes = ResultCodes{5, isPreCode ? devkit::Advice::kNobody : 0};
            login.steps.back().words.append(", but no JSON");
        }
        break;
    case Kind::deliver:
        // A messenger's failure is the only one that leaves no codes in the log.
        if (!login.codes && !login.failure.empty()) {
            login.codes = ResultCodes{9999, devkit::Advice::kNobody};
        }
        if (login.codes) {
            step.words.append(": retCode ").append(std::to_string(login.codes->retCode));
        }
        break;
    case Kind::drop:
    case Kind::request:
        break;
    }
}

std::string LoginStory::text(const std::string& sequenceId) const {
    std::string out;
    for (const Login& login : mLogins) {
        if (sequenceId.empty() || login.sequenceId == sequenceId) {
            out.append(out.empty() ? "" : "\n");
            appendLogin(out, login);
        }
    }
    return out;
}

void LoginStory::appendLogin(std::string& out, const Login& login) {
    out.append("login ");
    appendPrintable(out, login.sequenceId);
    out.append(", ");
    appendPrintable(out, login.channel.empty() ? "channel not known" : login.channel);
    out.append(", ").append(login.time).push_back('\n');
    int64_t last = login.steps.front().at;
    for (const Step& step : login.steps) {
        appendStep(out, step.at - login.steps.front().at, step.at - last, step.words);
        last = step.at;
    }
    appendResult(out, login);
}

void LoginStory::appendResult(std::string& out, const Login& login) {
    const std::string& last = login.steps.back().words;
    if (login.dropped) {
        appendLine(out, "result   none: ", last);
    } else if (!login.delivered) {
        const bool isOpen = login.remedy.empty() && !login.failure.empty();
        appendLine(out, "result   none in this log; the last step is: ", last);
        appendLine(out, "outside  ", login.failure == last ? "" : login.failure);
        appendLine(out, "remedy   ", isOpen ? devkit::Advice::OfResult(9999).remedy : login.remedy);
    } else if (!login.codes) {
        appendLine(out, "result   ", "the records that tell its retCode are not in this log");
    } else {
        const auto [retCode, thirdCode] = *login.codes;
        appendLine(out, "result   retCode ",
                   std::to_string(retCode) + ", " + devkit::Advice::OfResult(retCode).meaning);
        std::string outside = devkit::outsideMeaning(retCode, thirdCode);
        if (retCode == 5) {
            outside = outside.empty() ? "the backend's answer has no code" : outside;
            outside.append(login.message.empty() ? "" : ": \"" + login.message + '"');
        }
        appendLine(out, "outside  ", outside.empty() ? login.failure : outside);
        appendLine(out, "remedy   ",
                   login.remedy.empty() ? devkit::Advice::Of(retCode, thirdCode).remedy
                                        : login.remedy);
    }
}

} // namespace vesk::logread
