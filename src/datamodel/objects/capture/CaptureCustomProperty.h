// The stock custom property objects, read-only and writable.
#pragma once

#include "datamodel/objects/CustomPropertyInfo.h"
#include "datamodel/objects/capture/CaptureClone.h"

namespace Lathe::DataModel::Objects {

class CConstCaptureCustomProperty
    : public TConstCaptureClone<IDynamicPropertyValue, IConstCustomPropertyInfo,
                                CCustomPropertyInfo> {
public:
    // Null gives the empty value; what is given is deleted only if owned.
    explicit CConstCaptureCustomProperty(const IDynamicPropertyValue* value = nullptr,
                                         bool owned = true);
};

class CCaptureCustomProperty
    : public TCaptureClone<CConstCaptureCustomProperty, IDynamicPropertyValue,
                           IConstCustomPropertyInfo, CCustomPropertyInfo> {
public:
    using TCaptureClone::TCaptureClone;
};

} // namespace Lathe::DataModel::Objects
