#include "datamodel/objects/capture/CaptureString.h"

namespace Lathe::DataModel::Objects {

void CCaptureString::SetValue(const char* value) {
    if (m_Value == value)
        return;
    AssignValue(value);
    NotifyValueChanged();
}

} // namespace Lathe::DataModel::Objects
