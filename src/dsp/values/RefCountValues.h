// Vectors of shared immutable values: texts, curves, surfaces and custom properties. Copying one
// copies references, so that the audio thread can do it without allocation.
#pragma once

#include "core/containers/Vector.h"
#include "core/ownership/RefCountItem.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace Lathe::Audio::DSP {

// Makes an item of a copy of the value.
inline Core::RefCountItemPtr<const char*> MakeRefCountItem(const char* value) {
    return Core::RefCountItemPtr<const char*>(
        new Core::MTRefCountItem<const char*, Core::CCharString>(value));
}
template <class I>
Core::RefCountItemPtr<const I&> MakeRefCountItem(const I& value) {
    return Core::RefCountItemPtr<const I&>(
        new Core::MTRefCountItem<const I&, Core::OwnedPtr<I>>(Core::OwnedPtr<I>(value.Clone())));
}

// What a place reads as before it is given an item; specialised for each kind of value in
// RefCountValues.cpp.
template <class V>
V GetUnsetValue() LATHE_REALTIME;

template <class V>
class TRefCountValues : public Containers::IValueVector<V> {
public:
    int GetCount() const LATHE_REALTIME override { return static_cast<int>(m_Items.size()); }
    V GetValue(int index) const LATHE_REALTIME override {
        const Core::RefCountItemPtr<V>& item = GetItem(index);
        return item ? item->GetValue() : GetUnsetValue<V>();
    }
    // Stores a copy: not for the audio thread, which moves items.
    void SetValue(int index, V value) override { SetItem(index, MakeRefCountItem(value)); }

    // Keeps the items.
    void SetCount(int count) { m_Items.resize(static_cast<std::size_t>(count)); }

    const Core::RefCountItemPtr<V>& GetItem(int index) const LATHE_REALTIME {
        return m_Items[static_cast<std::size_t>(index)];
    }
    // Allocates nothing; frees the old item if this was its last holder.
    void SetItem(int index, Core::RefCountItemPtr<V> item) {
        m_Items[static_cast<std::size_t>(index)] = std::move(item);
    }

private:
    std::vector<Core::RefCountItemPtr<V>> m_Items;
};

} // namespace Lathe::Audio::DSP
