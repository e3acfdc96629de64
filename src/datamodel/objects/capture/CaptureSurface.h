// The stock surface objects, read-only and writable.
#pragma once

#include "datamodel/objects/SurfaceInfo.h"
#include "datamodel/objects/capture/CaptureClone.h"

namespace Lathe::DataModel::Objects {

class CConstCaptureSurface
    : public TConstCaptureClone<Math::IBinaryFunction, IConstSurfaceInfo, CSurfaceInfo> {
public:
    // Null gives the function that is its first variable; what is given is deleted only if owned.
    explicit CConstCaptureSurface(const Math::IBinaryFunction* value = nullptr, bool owned = true);
};

class CCaptureSurface : public TCaptureClone<CConstCaptureSurface, Math::IBinaryFunction,
                                             IConstSurfaceInfo, CSurfaceInfo> {
public:
    using TCaptureClone::TCaptureClone;
};

} // namespace Lathe::DataModel::Objects
