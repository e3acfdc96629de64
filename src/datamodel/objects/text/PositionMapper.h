// The interface by which a parameter's value becomes a position from 0 to 1 and back.
#pragma once

#include "core/Realtime.h"

namespace Lathe::DataModel::Objects {

class IParamPositionMapper {
public:
    virtual double ValueToPosition(double value) const LATHE_REALTIME = 0;
    virtual double PositionToValue(double position) const LATHE_REALTIME = 0;
    // The caller owns the copy.
    virtual IParamPositionMapper* Clone() const = 0;
    virtual ~IParamPositionMapper() = default;
};

} // namespace Lathe::DataModel::Objects
