#include "datamodel/objects/ObjectInfo.h"

namespace Lathe::DataModel {

void CObjectInfo::SetName(const char* name) {
    m_Name = name;
    NotifyChanged();
}

void CObjectInfo::SetDescription(const char* description) {
    m_Description = description;
    NotifyChanged();
}

void CObjectInfo::Copy(const IConstObjectInfo& other) {
    CopyTexts(other);
    NotifyChanged();
}

void CObjectInfo::CopyTexts(const IConstObjectInfo& other) {
    m_Name = other.GetName();
    m_Description = other.GetDescription();
}

} // namespace Lathe::DataModel
