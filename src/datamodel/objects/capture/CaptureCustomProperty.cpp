#include "datamodel/objects/capture/CaptureCustomProperty.h"

namespace Lathe::DataModel::Objects {

CConstCaptureCustomProperty::CConstCaptureCustomProperty(const IDynamicPropertyValue* value,
                                                         bool owned)
    : TConstCaptureClone(value ? value : new CEmptyDynamicPropertyValue, !value || owned) {}

} // namespace Lathe::DataModel::Objects
