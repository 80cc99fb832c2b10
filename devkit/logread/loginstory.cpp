#include "loginstory.h"

#include <algorithm>
#include <cstdio>

#include "printabletext.h"
#include "timestamp.h"

namespace vesk::logread {

namespace {

void appendStep(std::string& out, int64_t sinceBegin, int64_t sinceLast, std::string_view words) {
    char times[64] = {};
    std::snprintf(times, sizeof times, "%10lld ms  %+9lld ms  ", static_cast<long long>(sinceBegin),
                  static_cast<long long>(sinceLast));
    out.append(times);
    appendPrintable(out, words);
    out.push_back('\n');
}

} // namespace

void LoginStory::take(const LogRecord& record) {
    if (std::optional<std::string> channel = readRequestedChannel(record)) {
        mRequestedChannel = std::move(*channel);
        return;
    }
    const std::optional<int64_t> at = toMilliseconds(record.time);
    std::optional<LoginStep> step = at ? readLoginStep(record) : std::nullopt;
    if (!step) {
        return;
    }
    if (step->kind == LoginStep::Kind::begin && !step->sequenceId.empty()) {
        mLogins.push_back({step->sequenceId,
                           std::move(mRequestedChannel),
                           std::string(record.time),
                           {},
                           false,
                           false});
        mRequestedChannel.clear();
    }
    Login* login = find(step->sequenceId);
    if (login == nullptr) {
        return; // It began before this log, or it is a logout or a token refresh.
    }
    if (!step->channel.empty()) {
        login->channel = step->channel;
    }
    login->steps.push_back({*at, std::move(step->words)});
    login->delivered |= step->kind == LoginStep::Kind::deliver;
    login->dropped |= step->kind == LoginStep::Kind::drop;
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
    if (!login.delivered && !login.dropped) {
        out.append("            no result in this log\n");
    }
}

} // namespace vesk::logread
