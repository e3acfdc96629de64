// A function of time and x that is built from a history of curves over x.
#pragma once

#include "math/SweptHistory.h"

namespace Lathe::Math {

// Time 0 is the newest curve, -1.5 lies a second and a half before it.
class CSweptCurvesFunction : public TSweptHistory<IBinaryFunction, CSweptCurve> {
public:
    static const char* ClassId() { return "{D4E5AB2C-72BD-446e-BC18-BA7745DCA94A}"; }

    // The default is the constant 0.
    CSweptCurvesFunction();

    const char* GetClassId() const override { return ClassId(); }
    // A line from curve to curve at x; the newest from 0 on, and for a NaN; the default beyond the
    // oldest, and before 0 if there is but one.
    double Evaluate(double time, double x) const LATHE_REALTIME override;
    CSweptCurvesFunction* Clone() const override { return new CSweptCurvesFunction(*this); }

    // Both keep a clone.
    void SetDefaultValue(const IFunction& curve);
    // As the time of CSweptValues::AddPoint; what is refused isn't cloned.
    bool AddPoint(double time, const IFunction& curve);
};

} // namespace Lathe::Math
