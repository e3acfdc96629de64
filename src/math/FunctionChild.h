// How composite functions hold, store and read the functions that they are made of.
#pragma once

#include "core/Realtime.h"
#include "core/ownership/Ownership.h"
#include "math/Function.h"

namespace Lathe::Math {

// The shared function that takes the place of a missing child: the identity, the average of two,
// the number 0.
template <class I>
const I& GetDefaultFunction();
template <>
const IFunction& GetDefaultFunction<IFunction>();
template <>
const IBinaryFunction& GetDefaultFunction<IBinaryFunction>();
template <>
const IConstant& GetDefaultFunction<IConstant>();

// Trees are read and evaluated by recursion. A stream that goes below this depth is damaged, and
// what lies deeper isn't read.
inline constexpr int MaxFunctionNesting = 256;

// A formula whose operations or parentheses nest deeper is none, so that its tree can be read back
// with two levels more: a parameter's proxy, and the function that it stands for.
inline constexpr int MaxFormulaNesting = MaxFunctionNesting - 2;

// Reads one stored function of any class. Reads into the present one if it is of the stored class
// and owned; one that isn't owned may be anybody's, so that a clone takes its place. On failure
// the present function stays, valid but perhaps half read if it was owned.
template <class I>
class TFunctionReader : public Serialization::IDeSerialize {
public:
    explicit TFunctionReader(Core::TOwnershipWithClone<const I>& function) : m_Function(function) {}
    bool DeSerialize(const Serialization::IReadDataStream& input) override;

private:
    Core::TOwnershipWithClone<const I>& m_Function;
};

// A child that is never null. A copy owns a clone.
template <class I>
class TFunctionChild {
public:
    // Null gives the default function.
    TFunctionChild(const I* function, bool owned) { Set(function, owned); }
    void Set(const I* function, bool owned) {
        if (function)
            m_Function.Set(function, owned);
        else
            m_Function.Set(&GetDefaultFunction<I>(), false);
    }

    const I& Get() const LATHE_REALTIME { return *m_Function; }
    const I* operator->() const LATHE_REALTIME { return m_Function.Get(); }

    bool Serialize(Serialization::IWriteDataStream& output, const char* name) const;
    // False, with the child as TFunctionReader leaves it, when it can't be read.
    bool Read(const Serialization::IReadDataStream& input, const char* name);
    // Read; a child that can't be read becomes the default function, or, in an incremental stream,
    // stays and counts as read.
    bool DeSerialize(const Serialization::IReadDataStream& input, const char* name);

private:
    Core::TOwnershipWithClone<const I> m_Function;
};

} // namespace Lathe::Math
