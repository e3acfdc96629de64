#include "datamodel/overtime/CaptureSurfaceFromCurveOverTime.h"

#include "datamodel/objects/CurveInfo.h"

namespace Lathe::DataModel::Objects {

void SSurfaceFromCurve::TakeInfo(const IConstCurveInfo& source, CSurfaceInfo& info,
                                 Math::CSweptCurvesFunction& history) {
    history.SetDefaultValue(Math::CConstantFunction(source.GetYInfo().GetDefault()));
    info.SetYInfo(source.GetXInfo());
    info.SetZInfo(source.GetYInfo());
}

} // namespace Lathe::DataModel::Objects
