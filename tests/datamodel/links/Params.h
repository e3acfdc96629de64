// Parameters with ranges, for tests that join several of them.
#pragma once

#include "datamodel/Journal.h"
#include "datamodel/objects/capture/CaptureParam.h"

namespace Lathe::DataModel::Objects {

struct CRangedParam : CCaptureParam {
    CRangedParam(double min, double max, double value) {
        GetInfo().SetMax(max);
        GetInfo().SetMin(min);
        SetValue(value);
    }
    explicit CRangedParam(double value) : CRangedParam(-1000, 1000, value) {}
    // A whole gesture.
    void Move(double value) {
        Capture();
        SetValue(value);
        Release();
    }
};

} // namespace Lathe::DataModel::Objects
