// From the text of a formula to function objects. A text that is no formula, or that holds a name
// that nobody knows, gives null, as a null text does, and as one does that is longer than
// MaxFormulaLength or nests deeper than MaxFormulaNesting; each term of a sum is a level. The
// caller owns what it gets. Any number of threads may build at a time.
#pragma once

namespace Lathe::Math {

class IConstant;
class IFunction;
class IBinaryFunction;
template <class I>
class TIParametrizedFunction;

IConstant* BuildConstant(const char* formula);
IFunction* BuildFunction(const char* formula, const char* variable);
// A name given for both variables is that of x.
IBinaryFunction* BuildBinaryFunction(const char* formula, const char* xVariable,
                                     const char* yVariable);

// In these, names that nobody knows become parameters: of a value, of a curve where the name is
// called with one argument, of a surface where it is called with two.
TIParametrizedFunction<IConstant>* BuildParametrizedConstant(const char* formula);
TIParametrizedFunction<IFunction>* BuildParametrizedFunction(const char* formula,
                                                             const char* variable);
TIParametrizedFunction<IBinaryFunction>*
BuildParametrizedBinaryFunction(const char* formula, const char* xVariable, const char* yVariable);

} // namespace Lathe::Math
