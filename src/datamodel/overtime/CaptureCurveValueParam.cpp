#include "datamodel/overtime/CaptureCurveValueParam.h"

namespace Lathe::DataModel::Objects {

CCaptureCurveValueParam::CCaptureCurveValueParam(const IConstCaptureCurve* curve,
                                                 const IConstCaptureParam* x) {
    SetCurve(curve);
    SetX(x);
}

void CCaptureCurveValueParam::Disconnect() {
    SetCurve(nullptr);
    SetX(nullptr);
}

} // namespace Lathe::DataModel::Objects
