#include "mainloop/veskresultqueue.h"

#include <algorithm>
#include <utility>

#include "vesk/vesk_mainloop.h"

namespace Braxel {
namespace VESK {

void VESKResultQueue::PushLogin(uint64_t request, const VESKLoginRet& ret) {
    DropQrCode(request);
    mResults.push_back(std::make_unique<VESKResult>(VESKResult{VESK_RESULT_LOGIN, request, ret}));
}

void VESKResultQueue::PushBase(uint64_t request, const VESKBaseRet& ret) {
    if (mResults.size() < kMost) {
        mResults.push_back(
            std::make_unique<VESKResult>(VESKResult{VESK_RESULT_BASE, request, ret}));
    }
}

void VESKResultQueue::PushQrCode(uint64_t request, const VESKQrCodeRet& ret) {
    Drop(VESK_RESULT_QR_CODE);
    mResults.push_back(std::make_unique<VESKResult>(VESKResult{VESK_RESULT_QR_CODE, request, ret}));
}

void VESKResultQueue::PushRefreshed(uint64_t request, const VESKLoginRet& ret) {
    Drop(VESK_RESULT_REFRESHED);
    mResults.push_back(
        std::make_unique<VESKResult>(VESKResult{VESK_RESULT_REFRESHED, request, ret}));
}

void VESKResultQueue::DropQrCode(uint64_t request) {
    mResults.erase(std::remove_if(mResults.begin(), mResults.end(),
                                  [&](const std::unique_ptr<VESKResult>& result) {
                                      return result->kind == VESK_RESULT_QR_CODE &&
                                             result->request == request;
                                  }),
                   mResults.end());
}

void VESKResultQueue::Drop(int32_t kind) {
    mResults.erase(std::remove_if(mResults.begin(), mResults.end(),
                                  [&](const std::unique_ptr<VESKResult>& result) {
                                      return result->kind == kind;
                                  }),
                   mResults.end());
}

std::unique_ptr<VESKResult> VESKResultQueue::Pop() {
    if (mResults.empty()) {
        return nullptr;
    }
    std::unique_ptr<VESKResult> oldest = std::move(mResults.front());
    mResults.pop_front();
    return oldest;
}

} // namespace VESK
} // namespace Braxel
