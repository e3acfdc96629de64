#include "datamodel/objects/text/LinearPositionMapper.h"

namespace Lathe::DataModel::Objects {

CLinearPositionMapper::CLinearPositionMapper(EParamType type, double min, double max)
    : m_Type(type), m_Min(min), m_Max(max) {
    UpdateScale();
}

double CLinearPositionMapper::ValueToPosition(double value) const {
    if (IsEmpty())
        return 0.0;
    return (ParamConstrain(value, m_Min, m_Max, m_Type) - m_Min) * m_Scale;
}

double CLinearPositionMapper::PositionToValue(double position) const {
    return ParamConstrain(position * (m_Max - m_Min) + m_Min, m_Min, m_Max, m_Type);
}

CLinearPositionMapper* CLinearPositionMapper::Clone() const {
    return new CLinearPositionMapper(*this); // The caller's, by contract.
}

void CLinearPositionMapper::SetMin(double min) {
    m_Min = min;
    UpdateScale();
}

void CLinearPositionMapper::SetMax(double max) {
    m_Max = max;
    UpdateScale();
}

void CLinearPositionMapper::UpdateScale() {
    m_Scale = IsEmpty() ? 1.0 : 1.0 / (m_Max - m_Min);
}

} // namespace Lathe::DataModel::Objects
