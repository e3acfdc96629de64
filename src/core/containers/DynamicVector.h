// Growable arrays. Capacity falls only on demand, so that a SetCount within it costs nothing.
#pragma once

#include "core/Realtime.h"
#include "core/containers/GrowthStrategy.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <type_traits>
#include <utility>

namespace Lathe::Core {

template <class T>
struct TMemoryCopier {
    static_assert(std::is_trivially_copyable_v<T>);
    static void Copy(T* destination, const T* source, int count) {
        if (count > 0)
            std::memcpy(destination, source, static_cast<std::size_t>(count) * sizeof(T));
    }
};

template <class T>
struct TEqualOperatorCopier {
    static void Copy(T* destination, const T* source, int count) {
        for (int i = 0; i < count; ++i)
            destination[i] = source[i];
    }
};

// "NC" for "not kept": resizing may hand back a new block with unspecified contents. Elements are
// reached without bounds checks; the count is the caller's to know.
template <class T, class TGrowthStrategy>
class TNCDynamicVector {
public:
    explicit TNCDynamicVector(TGrowthStrategy strategy = TGrowthStrategy())
        : m_Strategy(strategy) {}
    TNCDynamicVector(const TNCDynamicVector& other) : m_Strategy(other.m_Strategy) {
        Assign(other);
    }
    TNCDynamicVector(TNCDynamicVector&& other) noexcept { Swap(other); }
    TNCDynamicVector& operator=(const TNCDynamicVector& other) {
        if (this != &other)
            Assign(other);
        return *this;
    }
    TNCDynamicVector& operator=(TNCDynamicVector&& other) noexcept {
        Swap(other);
        return *this;
    }

    int GetCount() const LATHE_REALTIME { return m_Count; }
    int GetCapacity() const LATHE_REALTIME { return m_Capacity; }
    T* GetData() LATHE_REALTIME { return m_Data.get(); }
    const T* GetData() const LATHE_REALTIME { return m_Data.get(); }
    T& operator[](int index) LATHE_REALTIME { return m_Data[static_cast<std::size_t>(index)]; }
    const T& operator[](int index) const LATHE_REALTIME {
        return m_Data[static_cast<std::size_t>(index)];
    }

    // Memory is given back only with force.
    void SetCount(int count, bool force = false) {
        const int capacity = m_Strategy.GetCapacity(count, m_Capacity);
        if (MustReallocate(capacity, force))
            Reallocate(capacity);
        m_Count = count;
    }

protected:
    bool MustReallocate(int capacity, bool force) const {
        return capacity > m_Capacity || (force && capacity < m_Capacity);
    }
    // Hands back the old block.
    std::unique_ptr<T[]> Reallocate(int capacity) {
        std::unique_ptr<T[]> old = std::move(m_Data);
        m_Data.reset(capacity > 0 ? new T[static_cast<std::size_t>(capacity)] : nullptr);
        m_Capacity = capacity;
        return old;
    }

    std::unique_ptr<T[]> m_Data;
    int m_Count = 0;
    int m_Capacity = 0;
    TGrowthStrategy m_Strategy;

private:
    void Assign(const TNCDynamicVector& other) {
        SetCount(other.m_Count);
        TEqualOperatorCopier<T>::Copy(GetData(), other.GetData(), m_Count);
    }
    void Swap(TNCDynamicVector& other) noexcept {
        std::swap(m_Data, other.m_Data);
        std::swap(m_Count, other.m_Count);
        std::swap(m_Capacity, other.m_Capacity);
        std::swap(m_Strategy, other.m_Strategy);
    }
};

// Keeps its elements when it is resized.
template <class T, class TGrowthStrategy, template <class> class TCopier>
class TDynamicVector : public TNCDynamicVector<T, TGrowthStrategy> {
public:
    using TNCDynamicVector<T, TGrowthStrategy>::TNCDynamicVector;

    void SetCount(int count, bool force = false) {
        const int capacity = this->m_Strategy.GetCapacity(count, this->m_Capacity);
        if (this->MustReallocate(capacity, force)) {
            const std::unique_ptr<T[]> old = this->Reallocate(capacity);
            const int kept = this->m_Count < capacity ? this->m_Count : capacity;
            TCopier<T>::Copy(this->GetData(), old.get(), kept);
        }
        this->m_Count = count;
    }

    void Append(const T& element) {
        T copy = element; // The element may lie in the block that is about to move.
        SetCount(this->m_Count + 1);
        (*this)[this->m_Count - 1] = std::move(copy);
    }
};

} // namespace Lathe::Core
