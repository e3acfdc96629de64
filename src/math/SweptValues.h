// A function of time that is built from a history of numbers, such as those of a meter.
#pragma once

#include "math/SweptHistory.h"

namespace Lathe::Math {

// 0 is the newest sample, -1.5 lies a second and a half before it.
class CSweptValues : public TSweptHistory<IFunction, double> {
public:
    static const char* ClassId() { return "{852FDB81-5DDA-4440-9598-AF98A8CFBC3D}"; }

    CSweptValues() : TSweptHistory(0.0) {}

    const char* GetClassId() const override { return ClassId(); }
    // A line from sample to sample; the newest from 0 on, and for a NaN; the default beyond the
    // oldest, and before 0 if there is but one.
    double Evaluate(double time) const LATHE_REALTIME override {
        return Interpolate(time, [](double value) { return value; });
    }
    CSweptValues* Clone() const override { return new CSweptValues(*this); }

    void SetDefaultValue(double value) { m_DefaultValue = value; }
    // The time is in seconds on any clock. False, and no change, unless it is above that of the
    // newest sample and there is room for points. Allocates nothing.
    bool AddPoint(double time, double value) {
        if (!Accepts(time))
            return false;
        Append(time, value);
        return true;
    }
};

} // namespace Lathe::Math
