#ifndef VESK_TESTS_FLOW_MESSENGERTEST_H
#define VESK_TESTS_FLOW_MESSENGERTEST_H

#include <functional>

#include "flow/flowtest.h"

namespace vesk::test {

/// A game that logs in through a messenger; its component is simulated.
class MessengerTest : public FlowTest {
protected:
    /// @param component the name of the simulator's files, "ferno" or "kz"
    MessengerTest(const char* channel, const char* component, const char* file);

    /// Replaces the component by another variant of the simulator, "full" or "partial".
    void install(const std::string& variant) const;
    /// Says how the component behaves from now on.
    void script(const std::string& settings) const;
    /// The lines that the component has written down and that hold @p text.
    std::vector<std::string> componentLines(const std::string& text) const;

    void startLogin();
    VESKLoginRet scanAndLogin();

    const std::string channel;
    const std::string component;
    const std::string file;
};

/// Calls back into the SDK from inside the results.
class ActingObserver final : public VESKLoginObserver {
public:
    std::function<void(const VESKLoginRet&)> onLogin = [](const VESKLoginRet&) {};
    std::function<void(const VESKBaseRet&)> onBase = [](const VESKBaseRet&) {};
    std::function<void(const VESKQrCodeRet&)> onQrCode = [](const VESKQrCodeRet&) {};

    void OnLoginRetNotify(const VESKLoginRet& ret) override { onLogin(ret); }
    void OnBaseRetNotify(const VESKBaseRet& ret) override { onBase(ret); }
    void OnQrCodeRetNotify(const VESKQrCodeRet& ret) override { onQrCode(ret); }
};

} // namespace vesk::test

#endif
