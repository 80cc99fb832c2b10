#include "answers/issuedprecodes.h"

#include "server/digest.h"

namespace vesk::backend {

namespace {

constexpr size_t kPreCodeBytes = 8;

} // namespace

std::string IssuedPreCodes::issue(const std::string& seq) {
    std::string preCode = "pre-" + randomHex(kPreCodeBytes);
    const std::lock_guard<std::mutex> lock(mMutex);
    mSeqs[preCode] = seq;
    return preCode;
}

std::string IssuedPreCodes::seqOf(const std::string& preCode) const {
    const std::lock_guard<std::mutex> lock(mMutex);
    const auto found = mSeqs.find(preCode);
    return found == mSeqs.end() ? std::string() : found->second;
}

} // namespace vesk::backend
