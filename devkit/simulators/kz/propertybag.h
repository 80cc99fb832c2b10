#ifndef VESK_DEVKIT_SIMULATORS_KZ_PROPERTYBAG_H
#define VESK_DEVKIT_SIMULATORS_KZ_PROPERTYBAG_H

#include <windows.h>
#include <atomic>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "common/text.h"
#include "comsupport.h"
#include "kzopensdk.h"

namespace vesk::kzsim {

/// An id of the contract, which has them in their text form.
GUID idOf(const char* text);

/// Writes down what a real component would not accept, or a script that cannot be followed.
void writeProblem(const std::string& what);

/// A lock, and a signal for those who wait for a change under it. Made of what needs neither a
/// handle nor data of a thread: a program that loads and frees this library again and again loses
/// nothing.
class Lock {
public:
    Lock() = default;
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    void lock() { AcquireSRWLockExclusive(&mLock); }
    void unlock() { ReleaseSRWLockExclusive(&mLock); }

    /// Called with the lock held, which is free while this waits.
    void wait(DWORD milliseconds) { SleepConditionVariableSRW(&mChanged, &mLock, milliseconds, 0); }
    void signal() { WakeAllConditionVariable(&mChanged); }

private:
    SRWLOCK mLock = SRWLOCK_INIT;
    CONDITION_VARIABLE mChanged = CONDITION_VARIABLE_INIT;
};

/// A member of every COM object: they keep the library in use. When the last one goes, that is
/// written down.
class LiveObject {
public:
    LiveObject() { ++sCount; }
    ~LiveObject();
    LiveObject(const LiveObject&) = delete;
    LiveObject& operator=(const LiveObject&) = delete;

    static long count() { return sCount; }

private:
    inline static std::atomic<long> sCount{0};
};

std::string toUtf8(std::wstring_view wide);

/// Parameters of a request, or what an event brings. Keeps the order in which values were set.
/// Names and texts are UTF-8 in here.
class PropertyBag final : public Braxel::VESK::ComObject<IKZProperties> {
public:
    using Pointer = Braxel::VESK::ComPtr<PropertyBag>;
    /// An entry that is null is there, but cannot be read.
    using List = std::vector<Pointer>;
    using Value = std::variant<LONG, bool, std::string, List>;

    static Pointer make();

    /// @p properties as one of ours, null when somebody else has made them.
    static Pointer from(IKZProperties* properties);

    void set(const std::string& name, Value value);

    /// The text of that name; empty when there is none.
    std::string text(const std::string& name) const;

    /// Adds each value but lists under its name.
    void writeTo(devkit::JsonLine& line) const;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    HRESULT STDMETHODCALLTYPE SetValue(const wchar_t* name, VARIANT value) override;
    HRESULT STDMETHODCALLTYPE GetInt(const wchar_t* name, LONG* value) override;
    HRESULT STDMETHODCALLTYPE GetText(const wchar_t* name, BSTR* value) override;
    HRESULT STDMETHODCALLTYPE GetListSize(const wchar_t* name, LONG* size) override;
    HRESULT STDMETHODCALLTYPE GetListEntry(const wchar_t* name, LONG index,
                                           IKZProperties** entry) override;

protected:
    const IID& InterfaceId() const override { return mInterfaceId; }

private:
    PropertyBag() = default;
    ~PropertyBag() override = default;

    /// Null when there is none.
    const Value* find(const std::string& name) const;

    /// The value of that name, which has to be a @p Type, as @p convert makes it.
    template <typename Type, typename Out, typename Convert>
    HRESULT get(const wchar_t* name, Out* out, const Convert& convert) const;

    const LiveObject mLive;
    const IID mInterfaceId = idOf(VESK_KZ_IID_PROPERTIES);
    std::vector<std::pair<std::string, Value>> mValues;
};

} // namespace vesk::kzsim

#endif
