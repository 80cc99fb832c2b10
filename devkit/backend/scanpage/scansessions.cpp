#include <algorithm>
#include <climits>

#include "scanpage/scanpage.h"
#include "server/json.h"

namespace vesk::backend {

namespace {

using std::chrono::milliseconds;

// The simulated messengers ask four times a second when nothing happens.
constexpr auto kLostAfter = std::chrono::seconds(6);

constexpr const char* kStateNames[] = {"waiting", "scanned",    "confirmed", "denied",
                                       "expired", "kicked out", "failed",    "ended"};

constexpr size_t kMaxSessions = 200;
constexpr size_t kMaxOver = 20;
constexpr size_t kIdBytes = 6;
constexpr size_t kMaxSeq = 200;
constexpr long long kMaxWaitMs = 30000;
constexpr long long kMaxIndex = 1000000;
// Each one that waits holds a thread of the server, which has 32.
constexpr int kMaxWaiting = 16;
constexpr auto kBusyWait = milliseconds(100);

bool isOver(const ScanSession& session) {
    return !session.isLive() || session.isLost();
}

std::string inventedCode(const std::string& channel, const std::string& id) {
    return (channel == "KZ" ? "https://kz.example/qr/" : "https://ferno.example/qr/") + id;
}

/// A number in the query, 0 when it is missing.
long long numberIn(const httplib::Request& request, const char* name, long long max) {
    const std::string text = request.has_param(name) ? request.get_param_value(name) : "0";
    const auto number = numberOf(text, 0, max);
    if (!number) {
        throw Refusal(400, std::string(name) + " is not a number from 0 to " + std::to_string(max));
    }
    return *number;
}

} // namespace

std::string ScanWord::toJson(bool over) const {
    return JsonLine().add("button", button).add("code", code).add("over", over).text();
}

bool ScanSession::isLost() const {
    return isLive() && mAsking == 0 && Clock::now() - mLastAsked > kLostAfter;
}

bool ScanSession::allows(State next) const {
    if (!isLive() || (next == State::KickedOut && channel != "Ferno")) {
        return false; // the KZ component has no event for a kick-out
    }
    if (mState == State::Confirmed) {
        return next == State::KickedOut;
    }
    return next != State::Scanned || mState == State::Waiting;
}

bool ScanSession::press(const ScanWord& word) {
    const auto button = std::find(kScanButtons.begin(), kScanButtons.end(), word.button);
    const auto next = static_cast<State>(button - kScanButtons.begin() + 1);
    if (!allows(next)) {
        return false;
    }
    mWords.push_back(word);
    mState = next;
    return true;
}

void ScanSession::end() {
    // What the player has decided stays to be seen.
    if (isLive()) {
        mState = State::Ended;
    }
}

std::string ScanSession::ownerHasAsked(size_t index) {
    --mAsking;
    mLastAsked = Clock::now();
    const ScanWord word = mWords.size() > index ? mWords[index] : ScanWord();
    return word.toJson(!isLive() && mWords.size() <= index + 1);
}

std::string ScanSession::toJson() const {
    std::string buttons = "[";
    for (size_t i = 0; i < kScanButtons.size(); ++i) {
        if (allows(static_cast<State>(i + 1))) {
            appendElement(buttons, '"' + std::string(kScanButtons[i]) + '"');
        }
    }
    const auto created =
        std::chrono::duration_cast<std::chrono::milliseconds>(mCreated.time_since_epoch());
    return JsonLine()
        .add("id", id)
        .add("channel", channel)
        .add("seq", seq)
        .add("qrcode", qrCode)
        .add("created_ms", created.count())
        .add("state", isLost() ? "lost" : kStateNames[static_cast<size_t>(mState)])
        .add("live", isLive() && !isLost())
        .addRaw("buttons", buttons + "]")
        .text();
}

void ScanSessions::install(httplib::Server& server) {
    using httplib::Request;
    onGet(server, "/sessions", [this](const Request&) { return toJson(); });
    onJson(server, "/sessions", [this](const Request& request, const PostedJson& body) {
        return begin("http://" + request.get_header_value("Host"), body);
    });
    onJson(server, "/sessions/([0-9a-f]+)/press",
           [this](const Request& request, const PostedJson& body) {
               press(request.matches[1], body);
               return "{}";
           });
    onJson(server, "/sessions/([0-9a-f]+)/end", [this](const Request& request, const PostedJson&) {
        change(request.matches[1], [](ScanSession& session) { session.end(); });
        return "{}";
    });
    onGet(server, "/sessions/([0-9a-f]+)/word", [this](const Request& request) {
        const auto index = static_cast<size_t>(numberIn(request, "index", kMaxIndex));
        const milliseconds time(numberIn(request, "wait_ms", kMaxWaitMs));
        return waitForWord(request.matches[1], index, time);
    });
    server.Get(
        "/qr/([0-9a-f]+)\\.png", [this](const Request& request, httplib::Response& response) {
            response.set_content(qrPng(qrCodeOf(request.matches[1])).value_or(""), "image/png");
        });
}

std::string ScanSessions::toJson() const {
    std::string json = "[";
    const std::lock_guard<std::mutex> lock(mMutex);
    for (const ScanSession& session : mSessions) {
        appendElement(json, session.toJson());
    }
    return json + "]";
}

std::string ScanSessions::begin(const std::string& address, const PostedJson& body) {
    static const std::vector<std::string> kChannels = {"Ferno", "KZ"};
    ScanSession session;
    session.id = randomHex(kIdBytes);
    session.channel = kChannels[body.choice("channel", kChannels, false)];
    session.qrCode = body.text("qrcode");
    session.seq = body.text("seq");
    if (session.qrCode.empty()) {
        session.qrCode = inventedCode(session.channel, session.id);
    }
    if (session.seq.size() > kMaxSeq || !qrPng(session.qrCode)) {
        throw Refusal(400, "the QR code's text or the sequence id is too long");
    }
    if (session.seq.empty()) {
        session.seq = mIssued.seqOf(body.text("precode"));
    }
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        forgetOldOnes();
        if (mSessions.size() >= kMaxSessions) {
            throw Refusal(503, "there are too many sessions");
        }
        mSessions.push_back(session);
    }
    mWaitingRoom.noteChange();
    return JsonLine()
        .add("id", session.id)
        .add("qrcode", session.qrCode)
        .add("picture", address + "/qr/" + session.id + ".png")
        .text();
}

void ScanSessions::press(const std::string& id, const PostedJson& body) {
    ScanWord word;
    word.button =
        kScanButtons[body.choice("button", {kScanButtons.begin(), kScanButtons.end()}, false)];
    word.code = body.number("code", INT_MIN, INT_MAX, 0);
    if (word.button == "fail" && word.code == 0) {
        throw Refusal(400, "the button 'fail' needs a code, a number other than 0");
    }
    change(id, [&word](ScanSession& session) {
        if (!session.press(word)) {
            throw Refusal(409, "the session does not take that button now");
        }
    });
}

std::string ScanSessions::waitForWord(const std::string& id, size_t index, milliseconds time) {
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        find(id).ownerAsks();
    }
    const bool isBusy = ++mWaiting > kMaxWaiting;
    mWaitingRoom.waitUntil(
        [&] {
            const std::lock_guard<std::mutex> lock(mMutex);
            const ScanSession* session = lookUp(id);
            return session == nullptr || session->hasAnswer(index);
        },
        isBusy ? std::min(time, kBusyWait) : time);
    --mWaiting;
    // Looked up anew: the session may be gone, or lie elsewhere, after a wait.
    const std::lock_guard<std::mutex> lock(mMutex);
    ScanSession* session = lookUp(id);
    return session == nullptr ? ScanWord().toJson(true) : session->ownerHasAsked(index);
}

std::string ScanSessions::qrCodeOf(const std::string& id) {
    const std::lock_guard<std::mutex> lock(mMutex);
    return find(id).qrCode;
}

void ScanSessions::change(const std::string& id, const std::function<void(ScanSession&)>& how) {
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        how(find(id));
    }
    mWaitingRoom.noteChange();
}

ScanSession* ScanSessions::lookUp(const std::string& id) {
    const auto found = std::find_if(mSessions.begin(), mSessions.end(),
                                    [&](const ScanSession& session) { return session.id == id; });
    return found == mSessions.end() ? nullptr : &*found;
}

ScanSession& ScanSessions::find(const std::string& id) {
    ScanSession* const session = lookUp(id);
    if (session == nullptr) {
        throw Refusal(404, "there is no session " + inQuotes(id));
    }
    return *session;
}

void ScanSessions::forgetOldOnes() {
    auto over = static_cast<size_t>(std::count_if(mSessions.begin(), mSessions.end(), isOver));
    const auto forgotten = [&over](const ScanSession& session) {
        return over > kMaxOver && isOver(session) && over-- > 0;
    };
    mSessions.erase(std::remove_if(mSessions.begin(), mSessions.end(), forgotten), mSessions.end());
}

} // namespace vesk::backend
