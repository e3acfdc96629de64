// The link that copies a curve to another one.
#pragma once

#include "datamodel/links/CaptureObjectLink.h"
#include "datamodel/objects/capture/CaptureObject.h"

namespace Lathe::DataModel::Objects {

class CCaptureCurveLink final : public TCaptureObjectLink<IConstCaptureCurve, ICaptureCurve> {
public:
    using TCaptureObjectLink::TCaptureObjectLink;
};

} // namespace Lathe::DataModel::Objects
