// The walk from the tree of a formula's text to functions, with what all formulas know: operators,
// numbers, and the functions with a name.
#pragma once

#include "SkinEngine/Formula/FormulaTree.h"
#include "math/Function.h"

#include <memory>
#include <string_view>

namespace Lathe::Math {

// I is IConstant, IFunction or IBinaryFunction. Builds one formula. Every step gives null when it,
// or any step below, can't be built.
template <class I>
class TLocalFormulaBuilder {
public:
    using Node = AppEngine::CFormulaNode;

    // A name that is used as a value.
    virtual std::unique_ptr<I> BuildParam(const Node& node) = 0;
    // The function of the result of the node's one child.
    virtual std::unique_ptr<I> BuildUnary(const Node& node, std::unique_ptr<IFunction> unary) = 0;
    // Calls with so many arguments.
    virtual std::unique_ptr<I> BuildFunction1(const Node& node);
    virtual std::unique_ptr<I> BuildFunction2(const Node& node);
    virtual std::unique_ptr<I> BuildFunction3(const Node& node);
    virtual ~TLocalFormulaBuilder() = default;

    // Null also for what lies deeper than MaxFormulaNesting.
    std::unique_ptr<I> Build(const Node& node);

protected:
    // The name of a PARAM; empty when there is none.
    static std::string_view GetParamName(const Node& node);
    // The number that the name stands for everywhere.
    static std::unique_ptr<I> BuildNamedNumber(std::string_view name);
    static bool IsFunction1(std::string_view name);
    static bool IsFunction2(std::string_view name);
    // The node's one child.
    std::unique_ptr<I> BuildChild(const Node& node);
    // The results of the node's two children, combined.
    std::unique_ptr<I> BuildCombination(const Node& node,
                                        std::unique_ptr<IBinaryFunction> combineFunction);

private:
    std::unique_ptr<I> BuildNode(const Node& node);
    std::unique_ptr<I> BuildCall(const Node& node);

    int m_Depth = 0;
};

} // namespace Lathe::Math
