// The classes of which a formula's tree of one kind is made.
#pragma once

#include "math/Constant.h"
#include "math/FunctionsCombination.h"

namespace Lathe::Math {

// I is IConstant, IFunction or IBinaryFunction.
template <class I>
struct TFormulaKind;

template <>
struct TFormulaKind<IConstant> {
    using Number = CConstant;
    using Combination = CConstantsCombination;
};

template <>
struct TFormulaKind<IFunction> {
    using Number = CConstantFunction;
    using Combination = CFunctionsCombination;
};

template <>
struct TFormulaKind<IBinaryFunction> {
    using Number = CConstantBinaryFunction;
    using Combination = CBinaryFunctionsCombination;
};

} // namespace Lathe::Math
