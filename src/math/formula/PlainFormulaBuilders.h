// Builders of formulas in which every name must be known.
#pragma once

#include "core/text/CharString.h"
#include "math/formula/LocalFormulaBuilder.h"

namespace Lathe::Math {

class CConstantFormulaBuilder : public TLocalFormulaBuilder<IConstant> {
public:
    std::unique_ptr<IConstant> BuildParam(const Node& node) override;
    std::unique_ptr<IConstant> BuildUnary(const Node& node,
                                          std::unique_ptr<IFunction> unary) override;
};

class CFunctionFormulaBuilder : public TLocalFormulaBuilder<IFunction> {
public:
    explicit CFunctionFormulaBuilder(const char* variable) : m_Variable(variable) {}

    std::unique_ptr<IFunction> BuildParam(const Node& node) override;
    std::unique_ptr<IFunction> BuildUnary(const Node& node,
                                          std::unique_ptr<IFunction> unary) override;

private:
    Core::CCharString m_Variable;
};

// A name given for both variables is that of x.
class CBinaryFunctionFormulaBuilder : public TLocalFormulaBuilder<IBinaryFunction> {
public:
    CBinaryFunctionFormulaBuilder(const char* xVariable, const char* yVariable)
        : m_XVariable(xVariable), m_YVariable(yVariable) {}

    std::unique_ptr<IBinaryFunction> BuildParam(const Node& node) override;
    std::unique_ptr<IBinaryFunction> BuildUnary(const Node& node,
                                                std::unique_ptr<IFunction> unary) override;

private:
    Core::CCharString m_XVariable;
    Core::CCharString m_YVariable;
};

} // namespace Lathe::Math
