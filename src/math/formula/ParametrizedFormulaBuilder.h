// Builders of formulas in which a name that nobody knows becomes a parameter.
#pragma once

#include "math/formula/PlainFormulaBuilders.h"

namespace Lathe::Math {

template <class I>
class TParametrizedFunction;

// The builder for formulas of the kind in which every name must be known.
template <class I>
struct TPlainFormulaBuilder;
template <>
struct TPlainFormulaBuilder<IConstant> {
    using Type = CConstantFormulaBuilder;
};
template <>
struct TPlainFormulaBuilder<IFunction> {
    using Type = CFunctionFormulaBuilder;
};
template <>
struct TPlainFormulaBuilder<IBinaryFunction> {
    using Type = CBinaryFunctionFormulaBuilder;
};

template <class I>
class TParametrizedFunctionFormulaBuilder : public TPlainFormulaBuilder<I>::Type {
public:
    using Plain = typename TPlainFormulaBuilder<I>::Type;
    using typename Plain::Node;

    // The target outlives the builder. When the formula can't be built, the target may point at
    // nodes that are gone, and is of no use.
    template <class... TVariables>
    explicit TParametrizedFunctionFormulaBuilder(TParametrizedFunction<I>& target,
                                                 TVariables... variables)
        : Plain(variables...), m_Target(&target) {}

    std::unique_ptr<I> BuildParam(const Node& node) override;
    std::unique_ptr<I> BuildFunction1(const Node& node) override;
    std::unique_ptr<I> BuildFunction2(const Node& node) override;

private:
    TParametrizedFunction<I>* m_Target;
};

class CParametrizedFunctionFormulaBuilder : public TParametrizedFunctionFormulaBuilder<IFunction> {
public:
    CParametrizedFunctionFormulaBuilder(TParametrizedFunction<IFunction>& target,
                                        const char* variable)
        : TParametrizedFunctionFormulaBuilder(target, variable) {}
};

class CParametrizedBinaryFunctionFormulaBuilder
    : public TParametrizedFunctionFormulaBuilder<IBinaryFunction> {
public:
    CParametrizedBinaryFunctionFormulaBuilder(TParametrizedFunction<IBinaryFunction>& target,
                                              const char* xVariable, const char* yVariable)
        : TParametrizedFunctionFormulaBuilder(target, xVariable, yVariable) {}
};

} // namespace Lathe::Math
