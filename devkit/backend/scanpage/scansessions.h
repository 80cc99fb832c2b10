#ifndef VESK_DEVKIT_BACKEND_SCANPAGE_SCANSESSIONS_H
#define VESK_DEVKIT_BACKEND_SCANPAGE_SCANSESSIONS_H

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <string>

#include "answers/issued.h"
#include "httplib.h"
#include "scanpage/scansession.h"
#include "server/controlport.h"
#include "server/waitingroom.h"

namespace vesk::backend {

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

} // namespace vesk::backend

#endif
