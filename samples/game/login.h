#ifndef GAME_LOGIN_H
#define GAME_LOGIN_H

#include <string>

#include "vesk/vesk.hpp"

/// The login, for a frame loop: the part to copy. No function waits for anything.
class Login {
public:
    Login() { mLoop.setLoginTimeout(std::chrono::minutes(2)); }

    /// The player's wishes. @{
    void start(const std::string& channel) {
        mFailure.clear();
        mQrCodeUrl.clear();
        vesk::login(channel);
    }
    void back() { mLoop.cancelLogin(); }
    void logOut() { vesk::logout(); } ///@}

    /// Once in each frame: takes the results that have come since the last one.
    void update() {
        mLoop.poll(vesk::Overloaded{
            [&](const vesk::LoginRet& ret, uint64_t) {
                mPlayer = ret;
                judge(ret);
            },
            [&](const vesk::QrCodeRet& ret, uint64_t) { mQrCodeUrl = ret.qrCodeUrl; }, // the newest
            [&](const vesk::Refreshed& ret, uint64_t) {
                mPlayer = ret.login; // a new token, or none any more
                judge(ret.login);
            },
            [&](const vesk::BaseRet& ret, uint64_t) { judge(ret); }, // a logout
        });
        mState = mLoop.state();
    }

    /// As it was at update(). @{
    const vesk::State& state() const { return mState; }
    const vesk::LoginRet& player() const { return mPlayer; }    ///< who is signed in
    const std::string& qrCodeUrl() const { return mQrCodeUrl; } ///< of the picture to scan
    const std::string& failure() const { return mFailure; }     ///@} ///< empty when all is well

    /// Whether nothing is under way. The end of the program would cut a logout off.
    bool isIdle() { return mLoop.waitIdle(std::chrono::milliseconds(0)); }

private:
    void judge(const vesk::BaseRet& ret) {
        mFailure.clear();
        if (ret.retCode != VESK_SUCCESS && ret.retCode != VESK_LOGIN_CANCELLED) { // by "Back"
            const vesk_advice advice = vesk::describe(ret);
            mFailure = std::string("It did not work: ") + advice.meaning +
                       ". What to do: " + advice.remedy + ". (" + std::to_string(ret.retCode) +
                       ", " + std::to_string(ret.thirdCode) + ")";
        }
    }

    vesk::MainLoop mLoop;
    vesk::State mState;
    vesk::LoginRet mPlayer;
    std::string mQrCodeUrl, mFailure;
};

#endif
