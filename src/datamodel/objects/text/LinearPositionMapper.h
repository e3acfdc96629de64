// Positions in proportion to the value.
#pragma once

#include "core/Differs.h"
#include "datamodel/objects/ParamType.h"
#include "datamodel/objects/text/PositionMapper.h"

namespace Lathe::DataModel::Objects {

// Values are brought onto their type but not clamped, so that a value outside the range has a
// position outside 0 to 1. A range without width has the one position 0 and the one value min.
class CLinearPositionMapper : public IParamPositionMapper {
public:
    CLinearPositionMapper() = default;
    CLinearPositionMapper(EParamType type, double min, double max);

    double ValueToPosition(double value) const LATHE_REALTIME override;
    double PositionToValue(double position) const LATHE_REALTIME override;
    CLinearPositionMapper* Clone() const override;

    void SetType(EParamType type) { m_Type = type; }
    void SetMin(double min);
    void SetMax(double max);

private:
    bool IsEmpty() const { return !Core::Differs(m_Min, m_Max); }
    void UpdateScale();

    EParamType m_Type = EParamType::Float;
    double m_Min = 0.0;
    double m_Max = 0.0;
    // Positions per unit of value.
    double m_Scale = 1.0;
};

} // namespace Lathe::DataModel::Objects
