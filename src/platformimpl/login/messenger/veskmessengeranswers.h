#ifndef VESK_PLATFORMIMPL_LOGIN_MESSENGER_VESKMESSENGERANSWERS_H
#define VESK_PLATFORMIMPL_LOGIN_MESSENGER_VESKMESSENGERANSWERS_H

#include <cstdint>
#include <string>

#include "common/veskchannelfacts.h"
#include "module/veskmutex.h"
#include "platformimpl/login/messenger/vesknotify.h"

namespace Braxel {
namespace VESK {

/// Turns what a messenger says into results for the login core. The two messengers differ in their
/// facts only.
class VESKMessengerAnswers {
public:
    explicit VESKMessengerAnswers(const VESKChannelFacts& channel) : mChannel(channel) {}

    /// Later answers belong to this request. One is in progress at a time.
    /// @param order of the request among all.
    /// @return false when a newer one has come first; then nothing changes, and the component must
    ///         not be asked.
    bool SetSeqID(const std::string& seqID, uint64_t order);

    void CommitQrCode(const QrNotifyRecord& record);

    /// Success goes to the login core; a failure is a login result of its own. Deliberate: the
    /// record's message is not carried over.
    void CommitLogin(const LoginNotifyRecord& record);

    /// Deliberate: the status is not examined, a failure goes on with empty credentials.
    void CommitLoginRecord(const LoginNotifyRecord& record);

    void CommitLoginFailure(const std::string& seqID);
    void CommitLogout(const std::string& seqID);

private:
    std::string SeqID();
    void CommitAnswer(const LoginNotifyRecord& record, int32_t methodNameID, int32_t observerID);

    const VESKChannelFacts& mChannel;
    VESKMutex mMutex; // guards both below
    std::string mSeqID;
    uint64_t mOrder = 0;
};

} // namespace VESK
} // namespace Braxel

#endif
