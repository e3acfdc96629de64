#include "math/formula/LocalFormulaBuilder.h"

#include "core/text/NumericLocale.h"
#include "math/PlainFunction.h"
#include "math/formula/FormulaKind.h"

#include <cstdlib>
#include <numbers>
#include <string>

namespace Lathe::Math {

namespace {

using AppEngine::EFormulaToken;

template <class I>
using MakeFunction = std::unique_ptr<I> (*)();

template <PlainFunction F>
std::unique_ptr<IFunction> Make() {
    return std::unique_ptr<IFunction>(TFunction<F>::GetInstance().Clone());
}
template <PlainBinaryFunction F>
std::unique_ptr<IBinaryFunction> Make() {
    return std::unique_ptr<IBinaryFunction>(TBinaryFunction<F>::GetInstance().Clone());
}

template <class TKey, class I>
struct SRow {
    TKey m_Key;
    MakeFunction<I> m_Make;
};

constexpr SRow<EFormulaToken, IFunction> UnaryOperators[] = {
    {EFormulaToken::NEGATE, Make<FunctionsLibrary::Negate>},
    {EFormulaToken::NOT, Make<FunctionsLibrary::Not>},
};

constexpr SRow<EFormulaToken, IBinaryFunction> BinaryOperators[] = {
    {EFormulaToken::OR, Make<FunctionsLibrary::Or>},
    {EFormulaToken::AND, Make<FunctionsLibrary::And>},
    {EFormulaToken::EQUALS, Make<FunctionsLibrary::Equality>},
    {EFormulaToken::NOTEQUALS, Make<FunctionsLibrary::NotEqual>},
    {EFormulaToken::LTH, Make<FunctionsLibrary::LowerThan>},
    {EFormulaToken::LTEQ, Make<FunctionsLibrary::LowerThanEqual>},
    {EFormulaToken::GT, Make<FunctionsLibrary::GreaterThan>},
    {EFormulaToken::GTEQ, Make<FunctionsLibrary::GreaterThanEqual>},
    {EFormulaToken::PLUS, Make<FunctionsLibrary::Sum>},
    {EFormulaToken::MINUS, Make<FunctionsLibrary::Difference>},
    {EFormulaToken::MULT, Make<FunctionsLibrary::Product>},
    {EFormulaToken::DIV, Make<FunctionsLibrary::Division>},
    {EFormulaToken::MOD, Make<FunctionsLibrary::Modulo>},
    {EFormulaToken::POW, Make<FunctionsLibrary::Power>},
};

constexpr SRow<std::string_view, IFunction> Functions1[] = {
    {"exp", Make<FunctionsLibrary::Exp>},     {"log", Make<FunctionsLibrary::Log>},
    {"cosh", Make<FunctionsLibrary::Cosh>},   {"sinh", Make<FunctionsLibrary::Sinh>},
    {"tanh", Make<FunctionsLibrary::Tanh>},   {"cos", Make<FunctionsLibrary::Cos>},
    {"sin", Make<FunctionsLibrary::Sin>},     {"tan", Make<FunctionsLibrary::Tan>},
    {"floor", Make<FunctionsLibrary::Floor>}, {"ceil", Make<FunctionsLibrary::Ceil>},
    {"round", Make<FunctionsLibrary::Round>}, {"sqrt", Make<FunctionsLibrary::SquareRoot>},
    {"abs", Make<FunctionsLibrary::Abs>},
};

constexpr SRow<std::string_view, IBinaryFunction> Functions2[] = {
    {"min", Make<FunctionsLibrary::Min>},
    {"max", Make<FunctionsLibrary::Max>},
};

// Null when the key has no row.
template <class TKey, class I, std::size_t Count>
MakeFunction<I> Find(const SRow<TKey, I> (&rows)[Count], const TKey& key) {
    for (const auto& row : rows) {
        if (row.m_Key == key)
            return row.m_Make;
    }
    return nullptr;
}

double ReadNumber(std::string_view text) {
    const Core::CNumericLocaleScope locale;
    return std::strtod(std::string(text).c_str(), nullptr);
}

// Counts a level while it lives.
class CLevel {
public:
    explicit CLevel(int& depth) : m_Depth(depth) { ++m_Depth; }
    ~CLevel() { --m_Depth; }
    CLevel(const CLevel&) = delete;
    CLevel& operator=(const CLevel&) = delete;

private:
    int& m_Depth;
};

} // namespace

template <class I>
std::unique_ptr<I> TLocalFormulaBuilder<I>::BuildFunction1(const Node& node) {
    const auto make = Find(Functions1, node.GetText());
    return make ? BuildUnary(node, make()) : nullptr;
}

template <class I>
std::unique_ptr<I> TLocalFormulaBuilder<I>::BuildFunction2(const Node& node) {
    const auto make = Find(Functions2, node.GetText());
    return make ? BuildCombination(node, make()) : nullptr;
}

template <class I>
std::unique_ptr<I> TLocalFormulaBuilder<I>::BuildFunction3(const Node&) {
    return nullptr;
}

template <class I>
std::unique_ptr<I> TLocalFormulaBuilder<I>::Build(const Node& node) {
    const CLevel level(m_Depth);
    return m_Depth <= MaxFormulaNesting ? BuildNode(node) : nullptr;
}

template <class I>
std::string_view TLocalFormulaBuilder<I>::GetParamName(const Node& node) {
    return node.GetChildCount() == 1 ? node.GetChild(0).GetText() : std::string_view();
}

template <class I>
std::unique_ptr<I> TLocalFormulaBuilder<I>::BuildNamedNumber(std::string_view name) {
    if (name != "pi")
        return nullptr;
    return std::make_unique<typename TFormulaKind<I>::Number>(std::numbers::pi);
}

template <class I>
bool TLocalFormulaBuilder<I>::IsFunction1(std::string_view name) {
    return Find(Functions1, name) != nullptr;
}

template <class I>
bool TLocalFormulaBuilder<I>::IsFunction2(std::string_view name) {
    return Find(Functions2, name) != nullptr;
}

template <class I>
std::unique_ptr<I> TLocalFormulaBuilder<I>::BuildChild(const Node& node) {
    return node.GetChildCount() == 1 ? Build(node.GetChild(0)) : nullptr;
}

template <class I>
std::unique_ptr<I>
TLocalFormulaBuilder<I>::BuildCombination(const Node& node,
                                          std::unique_ptr<IBinaryFunction> combineFunction) {
    if (node.GetChildCount() != 2)
        return nullptr;
    std::unique_ptr<I> left = Build(node.GetChild(0));
    std::unique_ptr<I> right = left ? Build(node.GetChild(1)) : nullptr;
    if (!right)
        return nullptr;
    return std::make_unique<typename TFormulaKind<I>::Combination>(left.release(), right.release(),
                                                                   combineFunction.release(), true);
}

template <class I>
std::unique_ptr<I> TLocalFormulaBuilder<I>::BuildNode(const Node& node) {
    using Number = typename TFormulaKind<I>::Number;
    const EFormulaToken token = node.GetToken();
    switch (token) {
    case EFormulaToken::PARAM:
        return BuildParam(node);
    case EFormulaToken::INTEGER:
    case EFormulaToken::FLOAT:
        return std::make_unique<Number>(ReadNumber(node.GetText()));
    case EFormulaToken::BOOLEAN:
        return std::make_unique<Number>(node.GetText() == "true" ? 1.0 : 0.0);
    case EFormulaToken::IDENT:
        return BuildCall(node);
    default:
        break;
    }
    if (const auto make = Find(UnaryOperators, token))
        return BuildUnary(node, make());
    if (const auto make = Find(BinaryOperators, token))
        return BuildCombination(node, make());
    return nullptr;
}

template <class I>
std::unique_ptr<I> TLocalFormulaBuilder<I>::BuildCall(const Node& node) {
    switch (node.GetChildCount()) {
    case 1:
        return BuildFunction1(node);
    case 2:
        return BuildFunction2(node);
    case 3:
        return BuildFunction3(node);
    default:
        return nullptr;
    }
}

template class TLocalFormulaBuilder<IConstant>;
template class TLocalFormulaBuilder<IFunction>;
template class TLocalFormulaBuilder<IBinaryFunction>;

} // namespace Lathe::Math
