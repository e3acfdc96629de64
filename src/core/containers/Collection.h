// Arrays of concrete items that are seen as vectors of one of their interfaces.
#pragma once

#include "core/containers/DynamicVector.h"
#include "core/containers/Vector.h"

#include <cstddef>
#include <memory>

namespace Lathe::CoreUtilities {

// GetElement carries no `override`: with a read-only IVectorOf the mutable one overrides nothing.

// A fixed number of default-constructed items. Copying copies the items.
template <class TItem, class IItem, class IVectorOf = Containers::IVector<IItem>>
class TCollection : public IVectorOf {
public:
    explicit TCollection(int count)
        : m_Items(new TItem[static_cast<std::size_t>(count)]), m_Count(count) {}
    TCollection(const TCollection& other) : TCollection(other.m_Count) {
        Core::TEqualOperatorCopier<TItem>::Copy(m_Items.get(), other.m_Items.get(), m_Count);
    }
    // Between collections of one size.
    TCollection& operator=(const TCollection& other) {
        if (this != &other)
            Core::TEqualOperatorCopier<TItem>::Copy(m_Items.get(), other.m_Items.get(), m_Count);
        return *this;
    }

    int GetCount() const LATHE_REALTIME { return m_Count; }
    const IItem& GetElement(int index) const LATHE_REALTIME { return (*this)[index]; }
    IItem& GetElement(int index) LATHE_REALTIME { return (*this)[index]; }

    TItem& operator[](int index) LATHE_REALTIME { return m_Items[static_cast<std::size_t>(index)]; }
    const TItem& operator[](int index) const LATHE_REALTIME {
        return m_Items[static_cast<std::size_t>(index)];
    }

private:
    std::unique_ptr<TItem[]> m_Items;
    int m_Count;
};

// The resizable one. What TDynamicVectorOf keeps when it is resized, this keeps.
template <class TItem, class IItem, class IVectorOf = Containers::IVector<IItem>,
          class TDynamicVectorOf =
              Core::TDynamicVector<TItem, Core::CStepGrowthStrategy, Core::TEqualOperatorCopier>>
class TDynamicCollection : public IVectorOf {
public:
    explicit TDynamicCollection(int count = 0) { m_Items.SetCount(count); }

    int GetCount() const LATHE_REALTIME { return m_Items.GetCount(); }
    const IItem& GetElement(int index) const LATHE_REALTIME { return m_Items[index]; }
    IItem& GetElement(int index) LATHE_REALTIME { return m_Items[index]; }

    TItem& operator[](int index) LATHE_REALTIME { return m_Items[index]; }
    const TItem& operator[](int index) const LATHE_REALTIME { return m_Items[index]; }

    void SetCount(int count, bool force = false) { m_Items.SetCount(count, force); }

private:
    TDynamicVectorOf m_Items;
};

} // namespace Lathe::CoreUtilities
