// The link that copies a string to another one.
#pragma once

#include "datamodel/links/CaptureObjectLink.h"
#include "datamodel/objects/capture/CaptureObject.h"

namespace Lathe::DataModel::Objects {

class CCaptureStringLink final : public TCaptureObjectLink<IConstCaptureString, ICaptureString> {
public:
    using TCaptureObjectLink::TCaptureObjectLink;
};

} // namespace Lathe::DataModel::Objects
