#include "math/ValueCurve.h"

#include "math/PlainFunction.h"

#include <cstddef>
#include <iterator>

namespace Lathe::Math {

namespace {

// A getter in place of the object: shared functions are made on first use.
template <PlainFunction F>
const IFunction& Shared() {
    return TFunction<F>::GetInstance();
}

struct SCurve {
    const IFunction& (*m_Direct)();
    const IFunction& (*m_Inverse)();
};

using namespace FunctionsLibrary;

// By the number of the curve.
constexpr SCurve Curves[] = {
    {Shared<NormLog3>, Shared<NormExp3>}, // Log3
    {Shared<NormLog2>, Shared<NormExp2>}, // Log2
    {Shared<NormLog1>, Shared<NormExp1>}, // Log1
    {Shared<Identity>, Shared<Identity>}, // Log0
    {Shared<SquareRoot>, Shared<Square>}, // SquareRoot
    {Shared<NormLog>, Shared<NormExp>},   // Log
    {Shared<Identity>, Shared<Identity>}, // Linear
    {Shared<NormExp>, Shared<NormLog>},   // Exp
    {Shared<Square>, Shared<SquareRoot>}, // Square
    {Shared<Identity>, Shared<Identity>}, // Exp0
    {Shared<NormExp1>, Shared<NormLog1>}, // Exp1
    {Shared<NormExp2>, Shared<NormLog2>}, // Exp2
    {Shared<NormExp3>, Shared<NormLog3>}, // Exp3
};

// All are made when the program loads, so that the first use isn't one of the audio thread.
[[maybe_unused]] const bool AreMade = [] {
    for (const SCurve& row : Curves) {
        row.m_Direct();
        row.m_Inverse();
    }
    return true;
}();

} // namespace

void GetCurveFunctions(EParamValueCurve curve, const IFunction*& direct,
                       const IFunction*& inverse) {
    const auto number = static_cast<int>(curve);
    const bool known = number >= 0 && number < static_cast<int>(std::size(Curves));
    const SCurve& row = Curves[known ? number : static_cast<int>(EParamValueCurve::Linear)];
    direct = &row.m_Direct();
    inverse = &row.m_Inverse();
}

} // namespace Lathe::Math
