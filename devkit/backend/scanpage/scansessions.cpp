#include "scanpage/scansessions.h"

#include <algorithm>

#include "server/digest.h"
#include "server/json.h"

namespace vesk::backend {

namespace {

constexpr size_t kMaxSessions = 200;
constexpr size_t kMaxOver = 20;
constexpr size_t kIdBytes = 6;
// Each one that waits holds a thread of the server, which has 32.
constexpr int kMaxWaiting = 16;
constexpr auto kBusyWait = std::chrono::milliseconds(100);

bool isOver(const ScanSession& session) {
    return !session.isLive() || session.isLost();
}

std::string inventedCode(const std::string& channel, const std::string& id) {
    return (channel == "KZ" ? "https://kz.example/qr/" : "https://ferno.example/qr/") + id;
}

} // namespace

ScanSession ScanSessions::begin(const std::string& channel, const std::string& seq,
                                const std::string& qrCode) {
    ScanSession session;
    session.channel = channel;
    session.seq = seq;
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        forgetOldOnes();
        if (mSessions.size() >= kMaxSessions) {
            return session;
        }
        session.id = randomHex(kIdBytes);
        session.qrCode = qrCode.empty() ? inventedCode(channel, session.id) : qrCode;
        mSessions.push_back(session);
    }
    mWaitingRoom.noteChange();
    return session;
}

std::string ScanSessions::toJson() const {
    std::string json = "[";
    const std::lock_guard<std::mutex> lock(mMutex);
    for (const ScanSession& session : mSessions) {
        appendElement(json, session.toJson());
    }
    return json + "]";
}

std::optional<std::string> ScanSessions::qrCodeOf(const std::string& id) const {
    const std::lock_guard<std::mutex> lock(mMutex);
    for (const ScanSession& session : mSessions) {
        if (session.id == id) {
            return session.qrCode;
        }
    }
    return std::nullopt;
}

ScanSessions::Pressed ScanSessions::press(const std::string& id, const ScanWord& word) {
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        ScanSession* session = find(id);
        if (session == nullptr) {
            return Pressed::Unknown;
        }
        if (!session->press(word)) {
            return Pressed::NotNow;
        }
    }
    mChanged.notify_all();
    mWaitingRoom.noteChange();
    return Pressed::Done;
}

std::optional<ScanSessions::Word> ScanSessions::waitForWord(const std::string& id, size_t index,
                                                            std::chrono::milliseconds time) {
    std::unique_lock<std::mutex> lock(mMutex);
    if (ScanSession* session = find(id)) {
        session->ownerAsks();
    } else {
        return std::nullopt;
    }
    ++mWaiting;
    const auto patience = mWaiting > kMaxWaiting ? std::min(time, kBusyWait) : time;
    // Looked up anew each time: the session may be gone, or lie elsewhere, after a wait.
    ScanSession* session = nullptr;
    mChanged.wait_for(lock, patience, [&] {
        session = find(id);
        return mClosed || session == nullptr || session->words().size() > index ||
               !session->isLive();
    });
    --mWaiting;
    Word answer;
    if (session == nullptr) {
        answer.over = true;
        return answer;
    }
    session->ownerHasAsked();
    if (session->words().size() > index) {
        answer.word = session->words()[index];
    }
    answer.over = !session->isLive() && session->words().size() <= index + 1;
    return answer;
}

bool ScanSessions::end(const std::string& id) {
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        ScanSession* session = find(id);
        if (session == nullptr) {
            return false;
        }
        session->end();
    }
    mChanged.notify_all();
    mWaitingRoom.noteChange();
    return true;
}

void ScanSessions::close() {
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mClosed = true;
    }
    mChanged.notify_all();
}

ScanSession* ScanSessions::find(const std::string& id) {
    const auto found = std::find_if(mSessions.begin(), mSessions.end(),
                                    [&](const ScanSession& session) { return session.id == id; });
    return found == mSessions.end() ? nullptr : &*found;
}

void ScanSessions::forgetOldOnes() {
    auto over = static_cast<size_t>(std::count_if(mSessions.begin(), mSessions.end(), isOver));
    for (auto session = mSessions.begin(); session != mSessions.end() && over > kMaxOver;) {
        if (isOver(*session)) {
            session = mSessions.erase(session);
            --over;
        } else {
            ++session;
        }
    }
}

} // namespace vesk::backend
