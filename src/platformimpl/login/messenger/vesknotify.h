#ifndef VESK_PLATFORMIMPL_LOGIN_MESSENGER_VESKNOTIFY_H
#define VESK_PLATFORMIMPL_LOGIN_MESSENGER_VESKNOTIFY_H

#include <cstdint>
#include <string>

namespace Braxel {
namespace VESK {

constexpr int32_t kNotifySuccess = 0;
constexpr int32_t kNotifyFailure = 3;

/// A messenger component has a QR code to show.
struct QrNotifyRecord {
    std::string channel;
    std::string qrCodeUrl;
};

/// A messenger component has answered.
struct LoginNotifyRecord {
    int32_t status = kNotifySuccess;
    std::string message;
    std::string channel;
    std::string openid;
    std::string token;
    int64_t tokenExpire = 0; ///< Unix seconds
};

/// What a component answers when it has failed.
inline LoginNotifyRecord NotifyFailure(const char* channel, const std::string& message) {
    LoginNotifyRecord record;
    record.status = kNotifyFailure;
    record.message = message;
    record.channel = channel;
    return record;
}

/// What a messenger's wrapper tells its channel. Calls come on the component's own threads.
class VESKChannelNotify {
public:
    virtual void OnInnerQrCodeNotify(const QrNotifyRecord& record) = 0;
    virtual void OnInnerLoginNotify(const LoginNotifyRecord& record) = 0;
    virtual void OnInnerGetLoginRecordNotify(const LoginNotifyRecord& record) = 0;

protected:
    ~VESKChannelNotify() = default;
};

} // namespace VESK
} // namespace Braxel

#endif
