#include "math/formula/PlainFormulaBuilders.h"

#include "math/FunctionComposition.h"
#include "math/FunctionsComposition.h"
#include "math/PlainFunction.h"

namespace Lathe::Math {

std::unique_ptr<IConstant> CConstantFormulaBuilder::BuildParam(const Node& node) {
    return BuildNamedNumber(GetParamName(node));
}

std::unique_ptr<IConstant> CConstantFormulaBuilder::BuildUnary(const Node& node,
                                                               std::unique_ptr<IFunction> unary) {
    std::unique_ptr<IConstant> child = BuildChild(node);
    if (!child)
        return nullptr;
    return std::make_unique<CConstantComposition>(unary.release(), child.release());
}

std::unique_ptr<IFunction> CFunctionFormulaBuilder::BuildParam(const Node& node) {
    const std::string_view name = GetParamName(node);
    if (auto number = BuildNamedNumber(name))
        return number;
    if (name != m_Variable.GetText())
        return nullptr;
    return std::unique_ptr<IFunction>(TFunction<FunctionsLibrary::Identity>::GetInstance().Clone());
}

std::unique_ptr<IFunction> CFunctionFormulaBuilder::BuildUnary(const Node& node,
                                                               std::unique_ptr<IFunction> unary) {
    std::unique_ptr<IFunction> child = BuildChild(node);
    if (!child)
        return nullptr;
    auto composition = std::make_unique<CFunctionsComposition>();
    composition->SetCount(2);
    composition->SetFunction(0, child.release(), true);
    composition->SetFunction(1, unary.release(), true);
    return composition;
}

std::unique_ptr<IBinaryFunction> CBinaryFunctionFormulaBuilder::BuildParam(const Node& node) {
    const std::string_view name = GetParamName(node);
    if (auto number = BuildNamedNumber(name))
        return number;
    const IBinaryFunction* variable = nullptr;
    if (name == m_XVariable.GetText())
        variable = &TBinaryFunction<FunctionsLibrary::X>::GetInstance();
    else if (name == m_YVariable.GetText())
        variable = &TBinaryFunction<FunctionsLibrary::Y>::GetInstance();
    return std::unique_ptr<IBinaryFunction>(variable ? variable->Clone() : nullptr);
}

std::unique_ptr<IBinaryFunction>
CBinaryFunctionFormulaBuilder::BuildUnary(const Node& node, std::unique_ptr<IFunction> unary) {
    std::unique_ptr<IBinaryFunction> child = BuildChild(node);
    if (!child)
        return nullptr;
    return std::make_unique<CBinaryFunctionComposition>(unary.release(), child.release());
}

} // namespace Lathe::Math
