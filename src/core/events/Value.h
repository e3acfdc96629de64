// Values with a getter, a setter and a changed event, and the factories of values that another
// thread may replace at any moment.
#pragma once

#include "core/events/EventProvider.h"
#include "core/events/ValueStorage.h"

namespace Lathe::Core {

class IValueChangedEventProvider {
public:
    virtual IEventProvider& GetValueChangedEvent() const = 0;
    virtual ~IValueChangedEventProvider() = default;
};

template <class T>
class TIConstValue {
public:
    virtual T GetValue() const = 0;
    virtual ~TIConstValue() = default;
};

template <class T>
class TIValue : public virtual TIConstValue<T> {
public:
    virtual void SetValue(T value) = 0;
};

// The same for values that can't be handed out by reference: each call gives a fresh copy, which
// the caller frees (texts with delete[], objects with delete).
template <class T>
class TIConstValueFactory {
public:
    using Copy = typename TValueStorage<T>::Copy;

    virtual Copy GetValue() const = 0;
    virtual ~TIConstValueFactory() = default;
};

template <class T>
class TIValueFactory : public virtual TIConstValueFactory<T> {
public:
    virtual void SetValue(T value) = 0;
};

// Stores a copy and notifies after the store, only if the value differs (TValueStorage says what
// that means for each type).
template <class T, class TEventProvider>
class TValue : public TIValue<T>, public IValueChangedEventProvider {
public:
    TValue() = default;
    explicit TValue(T value) : m_Value(value) {}

    IEventProvider& GetValueChangedEvent() const override { return m_ValueChanged; }
    T GetValue() const override { return m_Value.Get(); }
    void SetValue(T value) override {
        if (m_Value.IsEqual(value))
            return;
        m_Value.Set(value);
        m_ValueChanged.Notify();
    }
    // The same with a copy that a factory gave, which it takes over.
    void TakeValue(typename TValueStorage<T>::Copy copy) {
        if (m_Value.Take(copy))
            m_ValueChanged.Notify();
    }

private:
    TValueStorage<T> m_Value;
    mutable TEventProvider m_ValueChanged;
};

template <class T, class TEventProvider>
class TValueFactory : public TIValueFactory<T>, public IValueChangedEventProvider {
public:
    using Copy = typename TIConstValueFactory<T>::Copy;

    TValueFactory() = default;
    explicit TValueFactory(T value) : m_Value(value) {}

    IEventProvider& GetValueChangedEvent() const override { return m_ValueChanged; }
    Copy GetValue() const override { return m_Value.MakeCopy(); }
    void SetValue(T value) override {
        if (m_Value.IsEqual(value))
            return;
        m_Value.Set(value);
        m_ValueChanged.Notify();
    }

private:
    TValueStorage<T> m_Value;
    mutable TEventProvider m_ValueChanged;
};

} // namespace Lathe::Core
