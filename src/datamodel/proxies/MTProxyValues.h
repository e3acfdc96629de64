// The two values of a thread proxy: what its reader has, and what is on its way there.
#pragma once

#include "core/Differs.h"
#include "core/Lock.h"
#include "core/text/CharString.h"
#include "core/threads/CriticalSection.h"

#include <atomic>
#include <memory>
#include <utility>

namespace Lathe::DataModel::Objects {

// A double that any thread writes and reads. The two threads of a proxy each store one holder and
// then look at the other; the order of all stores and loads sees to it that at least one of them
// finds the difference.
class CParamFloatValueHolder {
public:
    // Takes no lock.
    struct CLock {};
    struct CAutoLock {
        explicit CAutoLock(CLock&) {}
    };

    CParamFloatValueHolder() = default;
    explicit CParamFloatValueHolder(double value) : m_Value(value) {}
    CParamFloatValueHolder& operator=(const CParamFloatValueHolder& other) {
        SetValue(other.GetValue());
        return *this;
    }
    double GetValue() const { return m_Value.load(); }
    void SetValue(double value) { m_Value.store(value); }
    bool Differs(double value) const { return Core::Differs(value, GetValue()); }

private:
    std::atomic<double> m_Value{0.0};
};

// A text that is written, and compared with, under the lock.
class CStringValueHolder {
public:
    using CLock = System::CCriticalSection;
    using CAutoLock = Core::CAutoLock;

    CStringValueHolder() = default;
    explicit CStringValueHolder(const char* value) : m_Value(value) {}
    const char* GetValue() const { return m_Value.GetText(); }
    void SetValue(const char* value) { m_Value = value; }
    bool Differs(const char* value) const { return !(m_Value == value); }

private:
    Core::CCharString m_Value;
};

} // namespace Lathe::DataModel::Objects

namespace Lathe::DataModel {

// For kinds that can be compared: THolder holds one T.
template <class T, class THolder>
class TMTProxyValues {
public:
    T GetValue() const { return m_Value.GetValue(); }

    // On the source's thread, with the source's events connected: both take its value. Where other
    // threads fire them, the newest.
    template <class TSource>
    void Start(const TSource& source) {
        do
            Receive(source);
        while (m_Pending.Differs(source.GetValue()));
        Update(true);
    }
    // On the thread of the source's event; true when the reader has another value.
    template <class TSource>
    bool Receive(const TSource& source) {
        const T value = source.GetValue();
        const CAutoLock lock(m_PendingLock);
        m_Pending.SetValue(value);
        return m_Value.Differs(m_Pending.GetValue());
    }
    // On the reader's thread; true when it got a new value. Looks again after each store: the
    // source's thread, which found no difference before, says nothing.
    bool Update(bool enabled) {
        const CAutoLock lock(m_PendingLock);
        bool updated = false;
        while (enabled && m_Value.Differs(m_Pending.GetValue())) {
            m_Value = m_Pending;
            updated = true;
        }
        return updated;
    }
    // On the reader's thread; true when the source's last value was another one.
    bool IsBehind() {
        const CAutoLock lock(m_PendingLock);
        return m_Value.Differs(m_Pending.GetValue());
    }
    // On the reader's thread; true when the value is new.
    bool Write(T value) {
        const CAutoLock lock(m_PendingLock);
        const bool differs = m_Value.Differs(value);
        if (differs)
            m_Value.SetValue(value);
        return differs;
    }

private:
    using CAutoLock = typename THolder::CAutoLock;

    THolder m_Value;
    THolder m_Pending;
    typename THolder::CLock m_PendingLock;
};

// For kinds with Clone(): clones, of which the pending one is null when there is nothing new. None
// is made or freed under the lock.
template <class I>
class TMTProxyObjects {
public:
    const I& GetValue() const { return *m_Value; }

    template <class TSource>
    void Start(const TSource& source) {
        m_Value.reset(source.GetValue().Clone());
    }
    // True unless the reader has been told and hasn't come yet: it will find the newest.
    template <class TSource>
    bool Receive(const TSource& source) {
        CValue clone(source.GetValue().Clone());
        const Core::CAutoLock lock(m_PendingLock);
        m_Pending.swap(clone);
        return !std::exchange(m_Told, true);
    }
    // Also when it isn't enabled, the reader has come and is told of the next change.
    bool Update(bool enabled) {
        CValue old;
        const Core::CAutoLock lock(m_PendingLock);
        m_Told = false;
        if (!enabled || !m_Pending)
            return false;
        old = std::exchange(m_Value, std::move(m_Pending));
        return true;
    }
    // On the reader's thread. Gives the old value, which may be what is written.
    std::unique_ptr<I> Exchange(const I& value) {
        return std::exchange(m_Value, CValue(value.Clone()));
    }

private:
    using CValue = std::unique_ptr<I>;

    CValue m_Value; // The reader's alone.
    CValue m_Pending;
    bool m_Told = false;
    System::CCriticalSection m_PendingLock;
};

} // namespace Lathe::DataModel
