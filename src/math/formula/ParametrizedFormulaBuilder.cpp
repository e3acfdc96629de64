#include "math/formula/ParametrizedFormulaBuilder.h"

#include "math/formula/ParametrizedFunctionHooks.h"

namespace Lathe::Math {

template <class I>
std::unique_ptr<I> TParametrizedFunctionFormulaBuilder<I>::BuildParam(const Node& node) {
    if (auto known = Plain::BuildParam(node))
        return known;
    const std::string_view name = this->GetParamName(node);
    if (name.empty())
        return nullptr;
    auto hook = std::make_unique<typename TFormulaKind<I>::Number>(0.0);
    m_Target->AddParam(name, *hook);
    return hook;
}

template <class I>
std::unique_ptr<I> TParametrizedFunctionFormulaBuilder<I>::BuildFunction1(const Node& node) {
    const std::string_view name = node.GetText();
    // A known name whose argument can't be built is not tried twice.
    if (this->IsFunction1(name))
        return Plain::BuildFunction1(node);
    auto hook = std::make_unique<CFunctionProxy>();
    m_Target->AddCurveParam(name, *hook);
    return this->BuildUnary(node, std::move(hook));
}

template <class I>
std::unique_ptr<I> TParametrizedFunctionFormulaBuilder<I>::BuildFunction2(const Node& node) {
    const std::string_view name = node.GetText();
    if (this->IsFunction2(name))
        return Plain::BuildFunction2(node);
    auto hook = std::make_unique<CBinaryFunctionProxy>();
    m_Target->AddSurfaceParam(name, *hook);
    return this->BuildCombination(node, std::move(hook));
}

template class TParametrizedFunctionFormulaBuilder<IConstant>;
template class TParametrizedFunctionFormulaBuilder<IFunction>;
template class TParametrizedFunctionFormulaBuilder<IBinaryFunction>;

} // namespace Lathe::Math
