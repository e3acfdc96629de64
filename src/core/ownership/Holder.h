// Holders for classes that must build a member before their other bases: they derive from one.
#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace Lathe::Core {

// Holds a T by value, or by pointer as a THolder<OwnedPtr<T>>. The number tells apart several
// holders of one type among the bases.
template <class T, int Number = 0>
class THolder {
public:
    // Constrained, so that a copy of a derived object still copies the held one.
    template <class... TArguments>
    requires std::is_constructible_v<T, TArguments...>
    explicit THolder(TArguments&&... arguments) : m_Held(std::forward<TArguments>(arguments)...) {}

    T& GetHeld() { return m_Held; }
    const T& GetHeld() const { return m_Held; }

private:
    T m_Held;
};

// Holds a reference to a T that outlives it.
template <class T, int Number = 0>
class TRefHolder {
public:
    explicit TRefHolder(T& held) : m_Held(held) {}

    T& GetHeld() const { return m_Held; }

private:
    T& m_Held;
};

// Destroys its pointee.
template <class I>
class OwnedPtr {
public:
    OwnedPtr() = default;
    explicit OwnedPtr(I* pointer) : m_Pointer(pointer) {}

    I* Get() const { return m_Pointer.get(); }
    I& operator*() const { return *m_Pointer; }
    I* operator->() const { return m_Pointer.get(); }

private:
    std::unique_ptr<I> m_Pointer;
};

} // namespace Lathe::Core
