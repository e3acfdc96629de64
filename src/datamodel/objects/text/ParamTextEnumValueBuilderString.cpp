#include "datamodel/objects/text/ParamTextEnumValueBuilderString.h"

#include "core/SaturatingCast.h"

namespace Lathe::DataModel::Objects {

void CParamTextEnumValueBuilderString::AssignValue(const char* value) {
    CCaptureString::AssignValue(value);
    m_EnumToText.Set(m_Value.GetText(), Core::TruncateToInt(m_ParamInfo->GetMin() + 0.5));
    m_ParamInfo->SetValueToText(&m_EnumToText, false);
}

} // namespace Lathe::DataModel::Objects
