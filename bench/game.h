#ifndef VESK_BENCH_GAME_H
#define VESK_BENCH_GAME_H

#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <string>
#include <vector>

#include "plainrequest.h"
#include "vesk/vesklogin.h"

namespace vesk::bench {

/// A game that logs in and out, with a clock. Its folder holds the settings, the CA and the
/// channels' components; the SDK is inside this program, the same objects as in the library.
class Game : public Braxel::VESK::VESKLoginObserver {
public:
    struct LoginTimes {
        double total;    ///< from the call of Login to the observer's, in nanoseconds
        double returned; ///< from the call of Login to its return
    };

    Game();

    /// Logs in and waits for the result; throws when that is no success.
    LoginTimes login(const char* channel);

    /// The two halves of that. @return when Login has returned, and when the result came
    static double startLogin(const char* channel);
    double waitForResult();

    /// Logs out, and waits until the requests and the timer that this and the login before have
    /// started are gone, so that what is measured next has the machine to itself.
    static void logout(const char* channel);

    /// The requests of a login on @p channel, to be made by plain libcurl.
    std::vector<PlainRequest> requestsOf(const std::string& channel) const;

    /// Forgets what the backend has recorded.
    static void clearBackend();

    std::filesystem::path log() const { return mFolder / "veskrecord.log"; }

    void OnLoginRetNotify(const Braxel::VESK::VESKLoginRet& ret) override;
    void OnBaseRetNotify(const Braxel::VESK::VESKBaseRet& ret) override;
    void OnQrCodeRetNotify(const Braxel::VESK::VESKQrCodeRet& ret) override;

private:
    std::filesystem::path mFolder;
    std::mutex mMutex;
    std::condition_variable mArrived;
    double mArrivedAt = 0;
    int mRetCode = 0;
};

/// Waits until no more than @p count threads are left in this process; throws after a while.
void waitForThreads(size_t count);

/// What @p requests take one after the other, each on a thread of its own that the one before has
/// started, in nanoseconds.
double timePlainly(const std::vector<PlainRequest>& requests);

} // namespace vesk::bench

#endif
