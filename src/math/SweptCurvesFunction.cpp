#include "math/SweptCurvesFunction.h"

#include "math/Constant.h"

namespace Lathe::Math {

CSweptCurvesFunction::CSweptCurvesFunction()
    : TSweptHistory(CSweptCurve(new CConstantFunction(0.0))) {}

double CSweptCurvesFunction::Evaluate(double time, double x) const {
    return Interpolate(time, [this, x](const CSweptCurve& curve) {
        // A stored history can hold a null among its curves.
        return (curve ? curve : m_DefaultValue)->Evaluate(x);
    });
}

void CSweptCurvesFunction::SetDefaultValue(const IFunction& curve) {
    m_DefaultValue.Set(curve.Clone(), true);
}

bool CSweptCurvesFunction::AddPoint(double time, const IFunction& curve) {
    if (!Accepts(time))
        return false;
    Append(time, CSweptCurve(curve.Clone()));
    return true;
}

} // namespace Lathe::Math
