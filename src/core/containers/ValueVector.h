// Value vectors over arrays: of pointers, seen as references, and of stored values.
#pragma once

#include "core/containers/Vector.h"
#include "core/ownership/RefCountItem.h"

#include <cstddef>
#include <vector>

namespace Lathe::CoreUtilities {

// Pointers of type const I*, none of them owned or null, seen as V (const I&).
template <class I, class V = const I&>
class TPointersValueVector : public Containers::IConstValueVector<V> {
public:
    explicit TPointersValueVector(int count = 0) { SetCount(count); }

    // New entries are null and are set before they are read.
    void SetCount(int count) { m_Pointers.resize(static_cast<std::size_t>(count)); }
    void SetPointer(int index, const I* pointer) LATHE_REALTIME {
        m_Pointers[static_cast<std::size_t>(index)] = pointer;
    }

    int GetCount() const LATHE_REALTIME override { return static_cast<int>(m_Pointers.size()); }
    V GetValue(int index) const LATHE_REALTIME override {
        return *m_Pointers[static_cast<std::size_t>(index)];
    }

private:
    std::vector<const I*> m_Pointers;
};

// Stored values, such as CCharString seen as const char*.
template <class V, class Storage>
class ValueVector : public Containers::IConstValueVector<V> {
public:
    explicit ValueVector(int count = 0) { SetCount(count); }

    void SetCount(int count) { m_Values.resize(static_cast<std::size_t>(count)); }
    Storage& GetStorage(int index) { return m_Values[static_cast<std::size_t>(index)]; }

    int GetCount() const LATHE_REALTIME override { return static_cast<int>(m_Values.size()); }
    V GetValue(int index) const LATHE_REALTIME override {
        return Core::GetStoredValue(m_Values[static_cast<std::size_t>(index)]);
    }

private:
    std::vector<Storage> m_Values;
};

} // namespace Lathe::CoreUtilities
