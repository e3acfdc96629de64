// The stock curve objects, read-only and writable.
#pragma once

#include "datamodel/objects/CurveInfo.h"
#include "datamodel/objects/capture/CaptureClone.h"

namespace Lathe::DataModel::Objects {

class CConstCaptureCurve : public TConstCaptureClone<Math::IFunction, IConstCurveInfo, CCurveInfo> {
public:
    // Null gives the identity; what is given is deleted only if owned.
    explicit CConstCaptureCurve(const Math::IFunction* value = nullptr, bool owned = true);
};

class CCaptureCurve
    : public TCaptureClone<CConstCaptureCurve, Math::IFunction, IConstCurveInfo, CCurveInfo> {
public:
    using TCaptureClone::TCaptureClone;
};

} // namespace Lathe::DataModel::Objects
