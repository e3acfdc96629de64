// Shared immutable values, counted by reference.
#pragma once

#include "core/Realtime.h"
#include "core/ownership/Holder.h"
#include "core/text/CharString.h"

#include <atomic>
#include <utility>

namespace Lathe::Core {

// What a storage shows: a text its characters, an owning pointer its object.
inline const char* GetStoredValue(const CCharString& text) LATHE_REALTIME {
    return text.GetText();
}
template <class I>
const I& GetStoredValue(const OwnedPtr<I>& pointer) LATHE_REALTIME {
    return *pointer;
}

template <class V>
class IRefCountItem {
public:
    virtual void AddRef() LATHE_REALTIME = 0;
    // Destroys the item when the last reference goes.
    virtual void Release() = 0;
    virtual V GetValue() const LATHE_REALTIME = 0;
    // True when the reference of the caller is the only one, so that nobody else can make more.
    virtual bool IsUnique() const LATHE_REALTIME = 0;

protected:
    virtual ~IRefCountItem() = default;
};

// Starts with a count of 0: the first RefCountItemPtr, or AddRef, makes it 1. For one thread.
template <class V, class Storage>
class RefCountItem : public IRefCountItem<V> {
public:
    explicit RefCountItem(Storage value) : m_Value(std::move(value)) {}

    void AddRef() LATHE_REALTIME override { ++m_Count; }
    void Release() override {
        if (--m_Count == 0)
            delete this;
    }
    V GetValue() const LATHE_REALTIME override { return GetStoredValue(m_Value); }
    bool IsUnique() const LATHE_REALTIME override { return m_Count == 1; }

private:
    Storage m_Value;
    int m_Count = 0;
};

// The same for any number of threads.
template <class V, class Storage>
class MTRefCountItem : public IRefCountItem<V> {
public:
    explicit MTRefCountItem(Storage value) : m_Value(std::move(value)) {}

    void AddRef() LATHE_REALTIME override { m_Count.fetch_add(1, std::memory_order_relaxed); }
    void Release() override {
        // The last release must see all that the other holders did with the value.
        if (m_Count.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }
    V GetValue() const LATHE_REALTIME override { return GetStoredValue(m_Value); }
    bool IsUnique() const LATHE_REALTIME override {
        return m_Count.load(std::memory_order_acquire) == 1;
    }

private:
    Storage m_Value;
    std::atomic<int> m_Count{0};
};

template <class V>
class RefCountItemPtr {
public:
    RefCountItemPtr() = default;
    explicit RefCountItemPtr(IRefCountItem<V>* item) LATHE_REALTIME : m_Item(item) {
        if (m_Item)
            m_Item->AddRef();
    }
    RefCountItemPtr(const RefCountItemPtr& other) LATHE_REALTIME : RefCountItemPtr(other.m_Item) {}
    RefCountItemPtr(RefCountItemPtr&& other) noexcept
        : m_Item(std::exchange(other.m_Item, nullptr)) {}
    RefCountItemPtr& operator=(RefCountItemPtr other) noexcept {
        std::swap(m_Item, other.m_Item);
        return *this;
    }
    ~RefCountItemPtr() {
        if (m_Item)
            m_Item->Release();
    }

    IRefCountItem<V>* Get() const { return m_Item; }
    IRefCountItem<V>* operator->() const { return m_Item; }
    explicit operator bool() const { return m_Item != nullptr; }

private:
    IRefCountItem<V>* m_Item = nullptr;
};

} // namespace Lathe::Core
