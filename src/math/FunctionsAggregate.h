// The base of functions that are made of an ordered list of functions.
#pragma once

#include "core/containers/Vector.h"
#include "core/ownership/Ownership.h"
#include "math/Function.h"

#include <cstddef>
#include <vector>

namespace Lathe::Math {

// Entries may be null. A copy clones the entries, and so owns all of them. Subclasses say what
// Evaluate makes of the list.
template <class I>
class TNFunctionsAggregate : public I, public Containers::ICount {
public:
    bool Serialize(Serialization::IWriteDataStream& output) const override;
    TNFunctionsAggregate* Clone() const override = 0;
    bool DeSerialize(const Serialization::IReadDataStream& input) override;

    int GetCount() const LATHE_REALTIME override { return static_cast<int>(m_Functions.size()); }
    // New entries are null. Not while another thread evaluates the object.
    void SetCount(int count) override {
        m_Functions.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    }

    // Null for a null entry.
    const I* GetFunction(int index) const LATHE_REALTIME {
        return m_Functions[static_cast<std::size_t>(index)].Get();
    }
    // An owned function is deleted by this object; one that is not owned outlives it, and may
    // change while it is here. Not while another thread evaluates the object.
    void SetFunction(int index, const I* function, bool owned) {
        m_Functions[static_cast<std::size_t>(index)].Set(function, owned);
    }

private:
    std::vector<Core::TOwnershipWithClone<const I>> m_Functions;
};

} // namespace Lathe::Math
