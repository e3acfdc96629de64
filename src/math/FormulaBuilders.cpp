#include "math/FormulaBuilders.h"

#include "math/formula/ParametrizedFormulaBuilder.h"
#include "math/formula/ParametrizedFunctionHooks.h"

namespace Lathe::Math {

namespace {

template <class I>
std::unique_ptr<I> Build(const char* formula, TLocalFormulaBuilder<I>&& builder) {
    if (!formula)
        return nullptr;
    const AppEngine::CFormulaTree tree(formula, MaxFormulaNesting);
    const auto root = tree.GetRoot();
    return root ? builder.Build(*root) : nullptr;
}

template <class TBuilder, class I, class... TVariables>
TIParametrizedFunction<I>* BuildParametrized(const char* formula, TVariables... variables) {
    auto result = std::make_unique<TParametrizedFunction<I>>();
    result->SetFunction(Build<I>(formula, TBuilder(*result, variables...)).release());
    return result->GetFunction() ? result.release() : nullptr;
}

} // namespace

IConstant* BuildConstant(const char* formula) {
    return Build<IConstant>(formula, CConstantFormulaBuilder()).release();
}

IFunction* BuildFunction(const char* formula, const char* variable) {
    return Build<IFunction>(formula, CFunctionFormulaBuilder(variable)).release();
}

IBinaryFunction* BuildBinaryFunction(const char* formula, const char* xVariable,
                                     const char* yVariable) {
    return Build<IBinaryFunction>(formula, CBinaryFunctionFormulaBuilder(xVariable, yVariable))
        .release();
}

TIParametrizedFunction<IConstant>* BuildParametrizedConstant(const char* formula) {
    using Builder = TParametrizedFunctionFormulaBuilder<IConstant>;
    return BuildParametrized<Builder, IConstant>(formula);
}

TIParametrizedFunction<IFunction>* BuildParametrizedFunction(const char* formula,
                                                             const char* variable) {
    using Builder = CParametrizedFunctionFormulaBuilder;
    return BuildParametrized<Builder, IFunction>(formula, variable);
}

TIParametrizedFunction<IBinaryFunction>*
BuildParametrizedBinaryFunction(const char* formula, const char* xVariable, const char* yVariable) {
    using Builder = CParametrizedBinaryFunctionFormulaBuilder;
    return BuildParametrized<Builder, IBinaryFunction>(formula, xVariable, yVariable);
}

} // namespace Lathe::Math
