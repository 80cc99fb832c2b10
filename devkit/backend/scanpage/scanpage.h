#ifndef VESK_DEVKIT_BACKEND_SCANPAGE_SCANPAGE_H
#define VESK_DEVKIT_BACKEND_SCANPAGE_SCANPAGE_H

#include <array>
#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "answers/memory.h"
#include "httplib.h"
#include "server/controlport.h"
#include "server/waitingroom.h"

namespace vesk::backend {

/// The longest text that is drawn.
constexpr size_t kMaxQrText = 1000;

/// The text as a QR code, a PNG file; nothing when the text does not fit into one. The picture
/// brings its quiet zone along, so that it can be scanned from a dark page.
std::optional<std::string> qrPng(const std::string& text);

/// What the player with the telephone can do, by the names that the control API has for it.
constexpr std::array<const char*, 6> kScanButtons = {"scanned", "confirm", "deny",
                                                     "expire",  "kickout", "fail"};

/// A button that was pressed.
struct ScanWord {
    /// Empty: none was.
    std::string button;
    /// For "fail": what the messenger reports, never 0.
    int code = 0;

    /// @param over nothing will come any more
    std::string toJson(bool over) const;
};

/// A QR code that waits for its player, and what that player has done. Its owner, a simulated
/// messenger or a script, asks for the words one after another.
class ScanSession {
public:
    using Clock = std::chrono::steady_clock;

    std::string id;
    std::string channel;
    /// Empty when nobody knows it.
    std::string seq;
    std::string qrCode;

    /// Whether there is still something to come: a confirmed session can be kicked out.
    bool isLive() const { return mState < State::Denied; }

    /// Live, but its owner has not asked for a while.
    bool isLost() const;

    /// @return false when the button makes no sense now.
    bool press(const ScanWord& word);

    /// The owner has gone, a logout for example.
    void end();

    /// The owner asks for the word with that index, and has got its answer.
    void ownerAsks() { ++mAsking; }
    bool hasAnswer(size_t index) const { return mWords.size() > index || !isLive(); }
    /// @return the answer
    std::string ownerHasAsked(size_t index);

    std::string toJson() const;

private:
    /// After the first one in the order of the buttons that lead there. Those from Denied on are
    /// final.
    enum class State { Waiting, Scanned, Confirmed, Denied, Expired, KickedOut, Failed, Ended };

    bool allows(State next) const;

    State mState = State::Waiting;
    std::vector<ScanWord> mWords;
    std::chrono::system_clock::time_point mCreated = std::chrono::system_clock::now();
    Clock::time_point mLastAsked = Clock::now();
    int mAsking = 0;
};

/// Keeps the sessions, the newest last, and brings their owners the buttons that were pressed. Safe
/// to use from several threads.
class ScanSessions {
public:
    /// @param waitingRoom hears of every change. Both references must outlive the server.
    ScanSessions(const Issued& issued, WaitingRoom& waitingRoom)
        : mIssued(issued), mWaitingRoom(waitingRoom) {}

    /// GET and POST /sessions, and under /sessions/<id>/ GET word, POST press and end.
    /// GET /qr/<id>.png, which is what a game shows.
    void install(httplib::Server& server);

    /// All of them as a JSON array, oldest first. Sessions that are over stay for a while.
    std::string toJson() const;

private:
    /// @param address where the one who asks has reached the control port
    std::string begin(const std::string& address, const PostedJson& body);
    void press(const std::string& id, const PostedJson& body);
    std::string waitForWord(const std::string& id, size_t index, std::chrono::milliseconds time);
    std::string qrCodeOf(const std::string& id);
    /// Changes a session; a Refusal when there is none.
    void change(const std::string& id, const std::function<void(ScanSession&)>& how);

    // Called with the lock held. Null, or a Refusal, when it is not known.
    ScanSession* lookUp(const std::string& id);
    ScanSession& find(const std::string& id);
    void forgetOldOnes();

    const Issued& mIssued;
    WaitingRoom& mWaitingRoom;
    mutable std::mutex mMutex;
    std::deque<ScanSession> mSessions;
    std::atomic<int> mWaiting{0};
};

/// What the page consists of; embed.cmake writes them.
extern const std::string_view kScanPageHtml;
extern const std::string_view kScanPageCss;
extern const std::string_view kScanPageJs;
extern const std::string_view kScanPageIcon;

/// GET / and what it refers to, out of the program itself, and GET /events, its news: server-sent
/// events. "sessions" and "requests" each bring the whole state, at the start and after a change,
/// so that a page that has lost the connection needs no history. All references must outlive the
/// server.
void installScanPage(httplib::Server& server, const ScanSessions& sessions, const RequestLog& log,
                     WaitingRoom& waitingRoom);

} // namespace vesk::backend

#endif
