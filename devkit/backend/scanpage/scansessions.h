#ifndef VESK_DEVKIT_BACKEND_SCANPAGE_SCANSESSIONS_H
#define VESK_DEVKIT_BACKEND_SCANPAGE_SCANSESSIONS_H

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>

#include "scanpage/scansession.h"
#include "server/waitingroom.h"

namespace vesk::backend {

/// Keeps the sessions, the newest last, and brings their owners the buttons that were pressed. Safe
/// to use from several threads.
class ScanSessions {
public:
    enum class Pressed { Done, Unknown, NotNow };

    /// The answer to an owner that waits.
    struct Word {
        /// There was none when it is not there.
        std::optional<ScanWord> word;
        /// Nothing will come any more.
        bool over = false;
    };

    /// @param waitingRoom hears of every change
    explicit ScanSessions(WaitingRoom& waitingRoom) : mWaitingRoom(waitingRoom) {}

    /// Begins a session; no id in it when there are too many.
    /// @param qrCode empty: the backend makes one up
    ScanSession begin(const std::string& channel, const std::string& seq,
                      const std::string& qrCode);

    /// All of them as a JSON array, oldest first. Sessions that are over stay for a while.
    std::string toJson() const;

    std::optional<std::string> qrCodeOf(const std::string& id) const;

    Pressed press(const std::string& id, const ScanWord& word);

    /// Waits for the word with this index; nothing for a session that is not known.
    std::optional<Word> waitForWord(const std::string& id, size_t index,
                                    std::chrono::milliseconds time);

    /// @return false when the session is not known.
    bool end(const std::string& id);

    /// The program ends: wakes everybody, and nobody waits any more.
    void close();

private:
    // Called with the lock held; null when it is not known.
    ScanSession* find(const std::string& id);
    void forgetOldOnes();

    WaitingRoom& mWaitingRoom;
    mutable std::mutex mMutex;
    std::condition_variable mChanged;
    std::deque<ScanSession> mSessions;
    int mWaiting = 0;
    bool mClosed = false;
};

} // namespace vesk::backend

#endif
