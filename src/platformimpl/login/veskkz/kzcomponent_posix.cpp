#include "platformimpl/login/veskkz/kzcomponent.h"

namespace Braxel {
namespace VESK {

namespace {

/// The messenger's component exists for Windows only.
class NoKZComponent : public KZComponent {
public:
    bool Create(const std::string& /*path*/) override { return false; }
    bool MakeSink(KZOpenSDKCallback* /*callback*/) override { return false; }
    int32_t Advise() override { return -1; }
    bool Initialize(const std::string& /*appID*/, const std::string& /*appKey*/) override {
        return false;
    }
    bool ShutDown() override { return false; }
    bool Unload() override { return true; }
    std::string GetGenerateSerialNumber() override { return {}; }
    bool LoginByQRCode(const std::string& /*preCode*/) override { return false; }
    int32_t GetLocalLoginList() override { return -1; }
    bool LoginByLocalLoginUser(const std::string& /*openid*/) override { return false; }
    bool RefreshClientTempKey() override { return false; }
    void Logout() override {}
};

} // namespace

std::unique_ptr<KZComponent> MakeKZComponent() {
    return std::make_unique<NoKZComponent>();
}

} // namespace VESK
} // namespace Braxel
