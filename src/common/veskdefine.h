#ifndef VESK_COMMON_VESKDEFINE_H
#define VESK_COMMON_VESKDEFINE_H

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "common/veskids.h"
#include "common/veskinnerrecords.h"
#include "foundation/log/vesklogger.h"
#include "module/veskmutex.h"
#include "module/vesksingleton.h"

namespace Braxel {
namespace VESK {

/// A result on its way to its handler.
template <typename T>
struct InnerTaskParams {
    T record;
    uint32_t observerID;
    std::string seqID;
};

/// Takes every internal result of type T to the handler that is registered for its observer id,
/// synchronously and on the committing thread. Handlers run without any lock held.
template <typename T>
class VESKInnerObserverHolder {
public:
    using Handler = void (*)(const T& record, const char* seqID);

    /// Registers @p handler for @p observerID in the place of any other.
    static void Register(int32_t observerID, Handler handler) {
        {
            const std::lock_guard<VESKMutex> lock(TheState().mutex);
            TheState().handlers[observerID] = handler;
        }
        commitCacheTask();
    }

    /// Delivers a copy of @p record. Without a handler the result is lost.
    static void CommitToTaskQueue(const T& record, int32_t observerID, const std::string& seqID) {
        auto params = std::make_unique<InnerTaskParams<T>>(
            InnerTaskParams<T>{record, static_cast<uint32_t>(observerID), seqID});
        VESK_LOG_AT(kLogDebug, MethodName("CommitToTaskQueue").c_str(),
                    "CallbackOnMainThread observerID:%d, seqID:%s", observerID, seqID.c_str());
        CallbackOnMainThread(std::move(params));
    }

private:
    // Leaked: results may still be committed while the process ends.
    struct State {
        VESKMutex mutex;
        std::map<int32_t, Handler> handlers;
        std::map<int32_t, InnerTaskParams<T>> mTaskParamsHolder;
    };

    static State& TheState() { return *VESKSingleton<State>::GetInstance(); }

    static std::string MethodName(const char* method) {
        return std::string("Braxel::VESK::VESKInnerObserverHolder<class Braxel::VESK::")
            .append(T::kRecordName)
            .append(">::")
            .append(method);
    }

    static Handler FindHandler(int32_t observerID) {
        const std::lock_guard<VESKMutex> lock(TheState().mutex);
        const auto found = TheState().handlers.find(observerID);
        return found == TheState().handlers.end() ? nullptr : found->second;
    }

    static void CallbackOnMainThread(std::unique_ptr<InnerTaskParams<T>> params) {
        const std::string method = MethodName("CallbackOnMainThread");
        const Handler handler = FindHandler(static_cast<int32_t>(params->observerID));
        if (handler == nullptr) {
            VESK_LOG_AT(kLogDebug, method.c_str(),
                        "can not get inner callback for %u, make sure you have define",
                        params->observerID);
            return;
        }
        VESK_LOG_AT(kLogDebug, method.c_str(), "observer address %p of observerID : %d",
                    reinterpret_cast<void*>(handler), static_cast<int>(params->observerID));
        handler(params->record, params->seqID.c_str());
    }

    static void commitCacheTask() {
        State& state = TheState();
        const std::string method = MethodName("commitCacheTask");
        std::unique_lock<VESKMutex> lock(state.mutex);
        auto entry = state.mTaskParamsHolder.begin();
        while (entry != state.mTaskParamsHolder.end()) {
            if (CommitCacheToTaskQueue(state, entry->second)) {
                const std::string seqID = entry->second.seqID;
                entry = state.mTaskParamsHolder.erase(entry);
                VESK_LOG_AT(
                    kLogDebug, method.c_str(), "mTaskParamsHolder size: %lu, after erase %s",
                    static_cast<unsigned long>(state.mTaskParamsHolder.size()), seqID.c_str());
            } else {
                ++entry;
            }
        }
        VESK_LOG_AT(kLogDebug, method.c_str(), "mTaskParamsHolder size: %lu, after commitCacheTask",
                    static_cast<unsigned long>(state.mTaskParamsHolder.size()));
    }

    /// Deliberate: there is no asynchronous main-thread dispatcher, so a cached result that has
    /// found its handler is logged and dropped.
    static bool CommitCacheToTaskQueue(const State& state, const InnerTaskParams<T>& params) {
        const int32_t observerID = static_cast<int32_t>(params.observerID);
        if (state.handlers.count(observerID) == 0) {
            return false;
        }
        VESK_LOG_AT(kLogDebug, MethodName("CommitCacheToTaskQueue").c_str(),
                    "DispatchAsyncMainThread %d", observerID);
        return true;
    }
};

} // namespace VESK
} // namespace Braxel

#endif
