// The link that copies a custom property to another one.
#pragma once

#include "datamodel/links/CaptureObjectLink.h"
#include "datamodel/objects/capture/CaptureObject.h"

namespace Lathe::DataModel::Objects {

class CCaptureCustomPropertyLink final
    : public TCaptureObjectLink<IConstCaptureCustomProperty, ICaptureCustomProperty> {
public:
    using TCaptureObjectLink::TCaptureObjectLink;
};

} // namespace Lathe::DataModel::Objects
