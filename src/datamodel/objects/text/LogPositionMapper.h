// Positions in proportion to the logarithm of the value, as for frequencies.
#pragma once

#include "core/Differs.h"
#include "datamodel/objects/ParamType.h"
#include "datamodel/objects/text/PositionMapper.h"

namespace Lathe::DataModel::Objects {

// The range is fixed, both ends above 0. With a minimum of 0 only the ends can be told apart: the
// maximum is at 1 and everything else at 0. Values are brought onto their type but not clamped. A
// range without width has the one position 0 and the one value min.
class CLogPositionMapper : public IParamPositionMapper {
public:
    CLogPositionMapper(EParamType type, double min, double max);

    double ValueToPosition(double value) const LATHE_REALTIME override;
    double PositionToValue(double position) const LATHE_REALTIME override;
    CLogPositionMapper* Clone() const override;

private:
    bool IsEmpty() const { return !Core::Differs(m_Min, m_Max); }
    bool StartsAtZero() const { return !Core::Differs(m_Min, 0.0); }

    EParamType m_Type;
    double m_Min;
    double m_Max;
    // Positions per natural logarithm of value over minimum.
    double m_Scale;
};

} // namespace Lathe::DataModel::Objects
