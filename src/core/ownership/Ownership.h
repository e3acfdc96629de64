// Pointers with an explicit owned flag.
#pragma once

namespace Lathe::Core {

// Destroys its pointee, on destruction or replacement, only when it owns it.
template <class T>
class TOwnership {
public:
    TOwnership() = default;
    explicit TOwnership(T* pointer, bool owned = true) : m_Pointer(pointer), m_Owned(owned) {}
    ~TOwnership() { Destroy(); }
    TOwnership(const TOwnership&) = delete;
    TOwnership& operator=(const TOwnership&) = delete;
    TOwnership(TOwnership&& other) noexcept : m_Pointer(other.m_Pointer), m_Owned(other.m_Owned) {
        other.Forget();
    }
    // When both have the same pointee, it stays owned if either owned it.
    TOwnership& operator=(TOwnership&& other) noexcept {
        if (this != &other) {
            Set(other.m_Pointer, other.m_Owned || (m_Owned && m_Pointer == other.m_Pointer));
            other.Forget();
        }
        return *this;
    }

    // Setting the pointer that it already has changes only the flag.
    void Set(T* pointer, bool owned = true) {
        if (pointer != m_Pointer)
            Destroy();
        m_Pointer = pointer;
        m_Owned = owned;
    }
    // Leaves null with the flag set.
    void Reset() { Set(nullptr, true); }
    // Gives the pointee away, and leaves as Reset does.
    T* Detach() {
        T* pointer = m_Pointer;
        Forget();
        return pointer;
    }

    T* Get() const { return m_Pointer; }
    bool IsOwned() const { return m_Owned; }
    T* operator->() const { return m_Pointer; }
    T& operator*() const { return *m_Pointer; }
    explicit operator bool() const { return m_Pointer != nullptr; }

private:
    void Destroy() {
        if (m_Owned)
            delete m_Pointer;
    }
    void Forget() {
        m_Pointer = nullptr;
        m_Owned = true;
    }

    T* m_Pointer = nullptr;
    bool m_Owned = true;
};

// The same; copying clones the pointee, so that a copy always owns.
template <class T>
class TOwnershipWithClone : public TOwnership<T> {
public:
    using TOwnership<T>::TOwnership;
    TOwnershipWithClone() = default;
    TOwnershipWithClone(const TOwnershipWithClone& other)
        : TOwnership<T>(other.Get() ? other.Get()->Clone() : nullptr, true) {}
    TOwnershipWithClone(TOwnershipWithClone&&) noexcept = default;
    TOwnershipWithClone& operator=(const TOwnershipWithClone& other) {
        if (this != &other)
            this->Set(other.Get() ? other.Get()->Clone() : nullptr, true);
        return *this;
    }
    TOwnershipWithClone& operator=(TOwnershipWithClone&&) noexcept = default;
};

} // namespace Lathe::Core
