#include "datamodel/objects/text/LogPositionMapper.h"

#include <cmath>

namespace Lathe::DataModel::Objects {

CLogPositionMapper::CLogPositionMapper(EParamType type, double min, double max)
    : m_Type(type),
      m_Min(min),
      m_Max(max),
      m_Scale(StartsAtZero() || IsEmpty() ? 1.0 : 1.0 / std::log(max / min)) {}

double CLogPositionMapper::ValueToPosition(double value) const {
    if (IsEmpty())
        return 0.0;
    const double constrained = ParamConstrain(value, m_Min, m_Max, m_Type);
    if (!StartsAtZero())
        return std::log(constrained / m_Min) * m_Scale;
    return Core::Differs(value, m_Max) ? 0.0 : 1.0;
}

double CLogPositionMapper::PositionToValue(double position) const {
    // The product of the two powers would miss the single value by a rounding.
    const double value =
        IsEmpty() ? m_Min : std::pow(m_Min, 1.0 - position) * std::pow(m_Max, position);
    return ParamConstrain(value, m_Min, m_Max, m_Type);
}

CLogPositionMapper* CLogPositionMapper::Clone() const {
    return new CLogPositionMapper(*this); // The caller's, by contract.
}

} // namespace Lathe::DataModel::Objects
