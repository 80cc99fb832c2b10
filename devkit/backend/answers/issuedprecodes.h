#ifndef VESK_DEVKIT_BACKEND_ANSWERS_ISSUEDPRECODES_H
#define VESK_DEVKIT_BACKEND_ANSWERS_ISSUEDPRECODES_H

#include <map>
#include <mutex>
#include <string>

namespace vesk::backend {

/// Remembers which login each pre-code was for, so that the QR code that is made of it can be told
/// from others. Safe to use from several threads.
class IssuedPreCodes {
public:
    /// Hands out a pre-code that nobody has seen before.
    /// @param seq the sequence id of the request, empty when it has none
    std::string issue(const std::string& seq);

    /// The sequence id that a pre-code was handed out for; empty when it is not known.
    std::string seqOf(const std::string& preCode) const;

private:
    mutable std::mutex mMutex;
    std::map<std::string, std::string> mSeqs;
};

} // namespace vesk::backend

#endif
