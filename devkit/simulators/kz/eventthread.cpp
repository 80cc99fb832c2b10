#include "eventthread.h"

#include <mutex>

#include "simulator.h"

namespace vesk::kzsim {

namespace {

constexpr ULONGLONG kPatience = 2000;

} // namespace

std::shared_ptr<EventThread> EventThread::start(std::shared_ptr<Listeners> listeners) {
    std::shared_ptr<EventThread> thread(new EventThread(std::move(listeners)));
    thread->mItself = thread;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&EventThread::run), &thread->mModule);
    // Not std::thread: it would return into code that is unmapped by then.
    thread->mHandle = CreateThread(nullptr, 0, &EventThread::run, thread.get(), 0, &thread->mId);
    if (thread->mHandle == nullptr) {
        FreeLibrary(thread->mModule);
        thread->mItself.reset();
        return nullptr;
    }
    return thread;
}

DWORD WINAPI EventThread::run(void* argument) {
    std::shared_ptr<EventThread> thread = std::move(static_cast<EventThread*>(argument)->mItself);
    for (Event event; thread->takeNext(event); event = Event()) {
        thread->deliver(event);
        const std::lock_guard<Lock> guard(thread->mLock);
        ++thread->mDelivered;
        thread->mLock.signal();
    }
    const HMODULE module = thread->mModule;
    thread.reset();
    FreeLibraryAndExitThread(module, 0);
}

unsigned EventThread::play(const Script& script) {
    const std::lock_guard<Lock> guard(mLock);
    ULONGLONG due = GetTickCount64();
    for (const Step& step : script) {
        due += step.delay;
        mToCome.emplace(due, step.event);
    }
    mLock.signal();
    return mDelivered;
}

bool EventThread::waitForMoreThan(unsigned before) {
    const ULONGLONG deadline = GetTickCount64() + kPatience;
    const std::lock_guard<Lock> guard(mLock);
    for (ULONGLONG now = GetTickCount64(); mDelivered <= before && !mIsStopping && now < deadline;
         now = GetTickCount64()) {
        mLock.wait(static_cast<DWORD>(deadline - now));
    }
    return mDelivered > before || mIsStopping;
}

void EventThread::stop() {
    {
        const std::lock_guard<Lock> guard(mLock);
        mIsStopping = true;
        mToCome.clear();
        mLock.signal();
    }
    if (!isThisThread()) {
        WaitForSingleObject(mHandle, INFINITE);
    }
    CloseHandle(mHandle);
}

void EventThread::leaveAlone() {
    CloseHandle(mHandle);
    const std::lock_guard<Lock> guard(mLock);
    mEndsWhenIdle = true;
    mLock.signal();
}

bool EventThread::takeNext(Event& event) {
    const std::lock_guard<Lock> guard(mLock);
    while (!mIsStopping && !(mEndsWhenIdle && mToCome.empty())) {
        const ULONGLONG now = GetTickCount64();
        const auto first = mToCome.begin();
        if (first == mToCome.end()) {
            mLock.wait(INFINITE);
        } else if (first->first > now) {
            mLock.wait(static_cast<DWORD>(first->first - now));
        } else {
            event = first->second;
            mToCome.erase(first);
            return true;
        }
    }
    return false;
}

void EventThread::deliver(const Event& event) {
    bool heard = false;
    for (const Listener::Pointer& listener : mListeners->all()) {
        // One listener may end it all for the next.
        if (isStopping()) {
            break;
        }
        const HRESULT result = listener->notify(event.type, event.bag.Get());
        if (FAILED(result)) {
            writeProblem("event " + std::to_string(event.type) + ": the listener answers " +
                         std::to_string(result));
        }
        heard = heard || SUCCEEDED(result);
    }
    if (heard) {
        simulator::writeDown(devkit::JsonLine().add("event", event.type));
    }
}

bool EventThread::isStopping() {
    const std::lock_guard<Lock> guard(mLock);
    return mIsStopping;
}

} // namespace vesk::kzsim
