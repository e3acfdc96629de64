// Bytes as the text of a formula.
#include "math/FormulaBuilders.h"
#include "math/FunctionChild.h"
#include "math/ParametrizedFunction.h"
#include "serialization/MemDataObject.h"
#include "serialization/TypedObject.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

using namespace Lathe;
using namespace Lathe::Math;

namespace {

constexpr double s_X = -1.75;
constexpr double s_Y = 2.5;

void Require(bool holds) {
    if (!holds)
        std::abort();
}

void RequireSame(double a, double b) {
    Require(a == b || (std::isnan(a) && std::isnan(b)));
}

double Evaluate(const IConstant& function) {
    return function.Evaluate();
}
double Evaluate(const IFunction& function) {
    return function.Evaluate(s_X);
}
double Evaluate(const IBinaryFunction& function) {
    return function.Evaluate(s_X, s_Y);
}

// Nothing at all, or what is the same as a clone and after writing and reading.
template <class I>
void CheckComesBack(const I* function) {
    if (!function)
        return;
    const std::unique_ptr<I> clone(function->Clone());
    RequireSame(Evaluate(*clone), Evaluate(*function));
    Serialization::CMemDataObject stored;
    Require(stored.WriteObject("function", Serialization::CTypeSerializer(function)));
    Core::TOwnershipWithClone<const I> read;
    TFunctionReader<I> reader(read);
    Require(stored.ReadObject("function", reader));
    RequireSame(Evaluate(*read), Evaluate(*function));
}

// The same text as each kind, with the variables x and y.
struct SFormula {
    explicit SFormula(const char* text)
        : m_Constant(BuildConstant(text)),
          m_Function(BuildFunction(text, "x")),
          m_BinaryFunction(BuildBinaryFunction(text, "x", "y")),
          m_LiveConstant(BuildParametrizedConstant(text)),
          m_LiveFunction(BuildParametrizedFunction(text, "x")),
          m_LiveBinaryFunction(BuildParametrizedBinaryFunction(text, "x", "y")) {}

    std::unique_ptr<IConstant> m_Constant;
    std::unique_ptr<IFunction> m_Function;
    std::unique_ptr<IBinaryFunction> m_BinaryFunction;
    std::unique_ptr<TIParametrizedFunction<IConstant>> m_LiveConstant;
    std::unique_ptr<TIParametrizedFunction<IFunction>> m_LiveFunction;
    std::unique_ptr<TIParametrizedFunction<IBinaryFunction>> m_LiveBinaryFunction;
};

// With parameters, all kinds know the same texts; without, each knows one name more than the last.
void CheckVerdicts(const SFormula& formula) {
    Require(!formula.m_Constant || formula.m_Function);
    Require(!formula.m_Function || formula.m_BinaryFunction);
    Require(!formula.m_BinaryFunction || formula.m_LiveConstant);
    Require(!formula.m_LiveConstant == !formula.m_LiveFunction);
    Require(!formula.m_LiveConstant == !formula.m_LiveBinaryFunction);
}

void CheckValues(const SFormula& formula) {
    if (!formula.m_LiveConstant)
        return;
    formula.m_LiveConstant->SetParam("x", s_X);
    formula.m_LiveConstant->SetParam("y", s_Y);
    formula.m_LiveFunction->SetParam("y", s_Y);
    const double value = Evaluate(*formula.m_LiveConstant->GetFunction());
    RequireSame(Evaluate(*formula.m_LiveFunction->GetFunction()), value);
    RequireSame(Evaluate(*formula.m_LiveBinaryFunction->GetFunction()), value);
    if (formula.m_Constant)
        RequireSame(Evaluate(*formula.m_Constant), value);
    if (formula.m_Function)
        RequireSame(Evaluate(*formula.m_Function), value);
    if (formula.m_BinaryFunction)
        RequireSame(Evaluate(*formula.m_BinaryFunction), value);
    CheckComesBack(formula.m_LiveConstant->GetFunction());
    CheckComesBack(formula.m_LiveFunction->GetFunction());
    CheckComesBack(formula.m_LiveBinaryFunction->GetFunction());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const SFormula formula(text.c_str());
    CheckVerdicts(formula);
    CheckValues(formula);
    return 0;
}
