#include "datamodel/objects/ParamInfo.h"

#include "core/Differs.h"
#include "datamodel/objects/text/ParamValueToText.h"

namespace Lathe::DataModel::Objects {

namespace {

// True when the field took another value.
bool Replace(double& field, double value) {
    if (!Core::Differs(value, field))
        return false;
    field = value;
    return true;
}

} // namespace

CParamInfo::CParamInfo(EParamType type, double min, double max, double defaultValue,
                       const char* name, const char* unit, const char* description,
                       IParamValueToText* valueToText, IParamPositionMapper* mapper)
    : m_Type(type),
      m_Name(name),
      m_Unit(unit),
      m_Description(description),
      m_Min(min),
      m_Max(max),
      m_Default(defaultValue),
      m_LinearMapper(type, min, max) {
    TakeValueToText(valueToText, true);
    TakePositionMapper(mapper, true);
}

void CParamInfo::SetType(EParamType type) {
    if (type == m_Type)
        return;
    m_Type = type;
    m_LinearMapper.SetType(type);
    m_Changed.Notify();
}

void CParamInfo::SetName(const char* name) {
    SetText(m_Name, name);
}

void CParamInfo::SetUnit(const char* unit) {
    SetText(m_Unit, unit);
}

void CParamInfo::SetDescription(const char* description) {
    SetText(m_Description, description);
}

void CParamInfo::SetMin(double min) {
    if (!Replace(m_Min, min))
        return;
    m_LinearMapper.SetMin(min);
    m_Changed.Notify();
}

void CParamInfo::SetDefault(double value) {
    if (Replace(m_Default, value))
        m_Changed.Notify();
}

void CParamInfo::SetMax(double max) {
    if (!Replace(m_Max, max))
        return;
    m_LinearMapper.SetMax(max);
    m_Changed.Notify();
}

void CParamInfo::SetValueToText(IParamValueToText* valueToText, bool owned) {
    TakeValueToText(valueToText, owned);
    m_Changed.Notify();
}

void CParamInfo::Copy(const IConstObjectInfo& other) {
    m_Description.Set(other.GetDescription());
    m_Name.Set(other.GetName());
    m_Changed.Notify();
}

void CParamInfo::Copy(const IConstParamInfo& other) {
    m_Description.Set(other.GetDescription());
    m_Default = other.GetDefault();
    m_Max = other.GetMax();
    m_Min = other.GetMin();
    m_Name.Set(other.GetName());
    m_Type = other.GetType();
    m_Unit.Set(other.GetUnit());
    m_LinearMapper = CLinearPositionMapper(m_Type, m_Min, m_Max);
    TakeValueToText(other.GetValueToText().Clone(), true);
    TakePositionMapper(other.GetPositionMapper().Clone(), true);
    m_Changed.Notify();
}

void CParamInfo::SetPositionMapper(IParamPositionMapper* mapper, bool owned) {
    TakePositionMapper(mapper, owned);
    m_Changed.Notify();
}

void CParamInfo::TakeValueToText(IParamValueToText* valueToText, bool owned) {
    if (valueToText)
        m_ValueToText.Set(valueToText, owned);
    else
        m_ValueToText.Set(new CParamValueToText(GetDefaultFormat(m_Type), false, "{value}"), true);
}

void CParamInfo::TakePositionMapper(IParamPositionMapper* mapper, bool owned) {
    if (mapper)
        m_PositionMapper.Set(mapper, owned);
    else
        m_PositionMapper.Set(&m_LinearMapper, false);
}

void CParamInfo::SetText(CNullableText& field, const char* text) {
    field.Set(text);
    m_Changed.Notify();
}

} // namespace Lathe::DataModel::Objects
