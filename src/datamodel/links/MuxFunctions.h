// What many-to-many links make of several sources, by the names of the model language.
#pragma once

#include <span>

namespace Lathe::Math {
class IFunction;
template <class I>
class TNFunctionsAggregate;
} // namespace Lathe::Math

namespace Lathe::DataModel::Objects {

// One number of those of the sources, in the order of the sources.
using MuxFunction = double (*)(std::span<const double> values);

// "max", "min" and "mean", which are 0 of nothing, and these negated as "-max" and so on; "<",
// "<=", ">", ">=" and "=", which are 1 if all neighbours compare so and else 0. Every other name,
// and null, gives the mean.
MuxFunction FindMuxFunction(const char* name);

// The shared, empty operation of "+", "-", "*" or "/", which nobody deletes; null for every other
// name, and for null.
const Math::TNFunctionsAggregate<Math::IFunction>* FindCurveOperator(const char* name);

} // namespace Lathe::DataModel::Objects
