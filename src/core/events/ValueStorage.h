// How a value object keeps its value: numbers as they are, texts as a copy, references to
// cloneable objects as a clone.
#pragma once

#include "core/text/CharString.h"

#include <atomic>
#include <memory>

namespace Lathe::Core {

// Numbers: equal means neither less nor greater, so a NaN equals everything and is not stored. Any
// thread may read while another one writes.
template <class T>
class TValueStorage {
public:
    using Copy = T;

    TValueStorage() = default;
    explicit TValueStorage(T value) : m_Value(value) {}
    TValueStorage(const TValueStorage& other) : m_Value(other.Get()) {}
    TValueStorage& operator=(const TValueStorage& other) {
        Set(other.Get());
        return *this;
    }
    T Get() const { return m_Value.load(std::memory_order_relaxed); }
    void Set(T value) { m_Value.store(value, std::memory_order_relaxed); }
    bool IsEqual(T value) const { return !(value < Get()) && !(value > Get()); }
    T MakeCopy() const { return Get(); }
    // Takes what a MakeCopy gave; false when it is equal to what was there. So for all kinds.
    bool Take(T copy) {
        if (IsEqual(copy))
            return false;
        Set(copy);
        return true;
    }

private:
    std::atomic<T> m_Value{};
};

// Texts: equal means equal letters; null counts as the empty text.
template <>
class TValueStorage<const char*> {
public:
    using Copy = char*;

    TValueStorage() = default;
    explicit TValueStorage(const char* value) : m_Value(value) {}
    const char* Get() const { return m_Value.GetText(); }
    void Set(const char* value) { m_Value = value; }
    bool IsEqual(const char* value) const { return m_Value == value; }
    char* MakeCopy() const { return NewText(m_Value.GetText()); }
    bool Take(char* copy) {
        const std::unique_ptr<char[]> taken(copy);
        if (IsEqual(copy))
            return false;
        Set(copy);
        return true;
    }

private:
    CCharString m_Value;
};

// Objects with Clone(): never equal, since nothing compares them. Get needs a value, given at first
// or since then.
template <class I>
class TValueStorage<const I&> {
public:
    using Copy = I*;

    TValueStorage() = default;
    explicit TValueStorage(const I& value) : m_Value(value.Clone()) {}
    const I& Get() const { return *m_Value; }
    void Set(const I& value) { m_Value.reset(value.Clone()); }
    bool IsEqual(const I&) const { return false; }
    I* MakeCopy() const { return m_Value->Clone(); }
    bool Take(I* copy) {
        if (copy != m_Value.get())
            m_Value.reset(copy);
        return true;
    }

private:
    std::unique_ptr<I> m_Value;
};

} // namespace Lathe::Core
