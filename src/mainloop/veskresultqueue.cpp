#include "mainloop/veskresultqueue.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "vesk/vesk_mainloop.h"

namespace Braxel {
namespace VESK {

namespace {

using Results = VESKResultQueue::Results;

template <typename Is>
void Drop(Results& results, const Is& isIt) noexcept {
    for (auto at = results.begin(); at != results.end();) {
        at = isIt(**at) ? results.erase(at) : std::next(at);
    }
}

Results::const_iterator Find(const Results& results, uint64_t request) noexcept {
    return std::find_if(results.begin(), results.end(),
                        [&](const auto& result) { return result->request == request; });
}

/// Without memory the codes are what the game gets.
template <typename Ret>
void Copy(const Ret& from, Ret& to) noexcept {
    try {
        to = from;
    } catch (...) { // NOLINT(bugprone-empty-catch): told below
    }
    to.methodNameID = from.methodNameID;
    to.retCode = from.retCode;
    to.thirdCode = from.thirdCode;
}

template <typename Ret>
Results Single(int32_t kind, uint64_t request, const Ret& ret) {
    Results single;
    single.push_back(std::make_unique<VESKResult>(VESKResult{kind, request, ret}));
    return single;
}

} // namespace

Results VESKResultQueue::Room(int32_t kind, uint64_t request) {
    return kind == VESK_RESULT_BASE ? Single(kind, request, VESKBaseRet())
                                    : Single(kind, request, VESKLoginRet());
}

void VESKResultQueue::Owe(Results& room) noexcept {
    mOwed.splice(mOwed.end(), room);
}

void VESKResultQueue::Answer(uint64_t request, const VESKLoginRet& ret, bool isHeldBack) noexcept {
    const auto owed = Find(mOwed, request);
    if (owed != mOwed.end()) {
        Copy(ret, *std::get_if<VESKLoginRet>(&(*owed)->ret));
        Send(owed, isHeldBack);
    }
}

void VESKResultQueue::Answer(uint64_t request, const VESKBaseRet& ret) noexcept {
    const auto owed = Find(mOwed, request);
    if (owed != mOwed.end()) {
        Copy(ret, *std::get_if<VESKBaseRet>(&(*owed)->ret));
        Send(owed, false);
    }
}

void VESKResultQueue::Refuse(uint64_t request, const Refusal& why, bool isHeldBack) noexcept {
    const auto owed = Find(mOwed, request);
    if (owed == mOwed.end()) {
        return;
    }
    auto* const login = std::get_if<VESKLoginRet>(&(*owed)->ret);
    VESKBaseRet& ret = login != nullptr ? *login : *std::get_if<VESKBaseRet>(&(*owed)->ret);
    ret.methodNameID = login != nullptr ? kMethodNameLogin : kMethodNameLogout;
    ret.retCode = why.code;
    ret.thirdCode = why.thirdCode;
    try {
        ret.retMsg = why.message;
        if (login != nullptr) {
            login->channel = why.channel;
        }
    } catch (...) { // NOLINT(bugprone-empty-catch): the codes are there
    }
    Send(owed, isHeldBack);
}

void VESKResultQueue::Send(Results::const_iterator owed, bool isHeldBack) noexcept {
    const uint64_t request = (*owed)->request;
    if ((*owed)->kind == VESK_RESULT_BASE && mResults.size() >= kMost) {
        mOwed.erase(owed);
        return;
    }
    Drop(mResults, [&](const VESKResult& result) { // the login has ended: nobody needs its code
        return result.kind == VESK_RESULT_QR_CODE && result.request == request;
    });
    Results& to = isHeldBack ? mHeldBack : mResults;
    to.splice(to.end(), mOwed, owed);
}

void VESKResultQueue::Release() noexcept {
    mResults.splice(mResults.end(), mHeldBack);
}

void VESKResultQueue::PushUnasked(const VESKLoginRet& ret) {
    mResults.splice(mResults.end(), Single(VESK_RESULT_LOGIN, 0, ret));
}

void VESKResultQueue::PushUnasked(const VESKBaseRet& ret) {
    if (mResults.size() < kMost) {
        mResults.splice(mResults.end(), Single(VESK_RESULT_BASE, 0, ret));
    }
}

void VESKResultQueue::PushQrCode(uint64_t request, const VESKQrCodeRet& ret) {
    Replace(Single(VESK_RESULT_QR_CODE, request, ret));
}

void VESKResultQueue::PushRefreshed(uint64_t request, const VESKLoginRet& ret) {
    Replace(Single(VESK_RESULT_REFRESHED, request, ret));
}

void VESKResultQueue::Replace(Results newer) noexcept {
    Drop(mResults, [&](const VESKResult& result) { return result.kind == newer.front()->kind; });
    mResults.splice(mResults.end(), newer);
}

std::unique_ptr<VESKResult> VESKResultQueue::Pop() noexcept {
    if (mResults.empty()) {
        return nullptr;
    }
    std::unique_ptr<VESKResult> oldest = std::move(mResults.front());
    mResults.pop_front();
    return oldest;
}

void VESKResultQueue::Clear() noexcept {
    mResults.clear();
    mOwed.clear();
    mHeldBack.clear();
}

} // namespace VESK
} // namespace Braxel
