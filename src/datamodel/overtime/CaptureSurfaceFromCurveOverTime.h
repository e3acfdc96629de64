// A surface over time and x that remembers the shapes of a curve over x.
#pragma once

#include "datamodel/objects/SurfaceInfo.h"
#include "datamodel/overtime/CaptureOverTime.h"
#include "math/SweptCurvesFunction.h"

namespace Lathe::DataModel::Objects {

struct SSurfaceFromCurve {
    using CSource = IConstCaptureCurve;
    using CFunction = Math::IBinaryFunction;
    using CHistory = Math::CSweptCurvesFunction;
    using IConstInfo = IConstSurfaceInfo;
    using CInfo = CSurfaceInfo;

    static constexpr int DefaultRefreshTime = 100;
    static constexpr bool DurationFiresValueChanged = true;
    // The curve's x is the surface's y, and its y the height; the history's default is the constant
    // of the default of the curve's y.
    static void TakeInfo(const IConstCurveInfo& source, CSurfaceInfo& info,
                         Math::CSweptCurvesFunction& history);
};

extern template class TCaptureOverTime<SSurfaceFromCurve>;

// A tick clones the curve, so that the refresh time is longer than that of a parameter.
class CCaptureSurfaceFromCurveOverTime : public TCaptureOverTime<SSurfaceFromCurve> {
public:
    using TCaptureOverTime::TCaptureOverTime;
};

} // namespace Lathe::DataModel::Objects
