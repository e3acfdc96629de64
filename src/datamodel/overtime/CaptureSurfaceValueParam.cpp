#include "datamodel/overtime/CaptureSurfaceValueParam.h"

namespace Lathe::DataModel::Objects {

CCaptureSurfaceValueParam::CCaptureSurfaceValueParam(const IConstCaptureSurface* surface,
                                                     const IConstCaptureParam* x,
                                                     const IConstCaptureParam* y) {
    SetSurface(surface);
    SetX(x);
    SetY(y);
}

void CCaptureSurfaceValueParam::Disconnect() {
    SetSurface(nullptr);
    SetX(nullptr);
    SetY(nullptr);
}

} // namespace Lathe::DataModel::Objects
