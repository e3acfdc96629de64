#include "math/Constant.h"

#include "serialization/DataStream.h"

namespace Lathe::Math {

bool CConstantValue::Serialize(Serialization::IWriteDataStream& output) const {
    return output.WriteDouble("value", &m_Value);
}

bool CConstantValue::DeSerialize(const Serialization::IReadDataStream& input) {
    if (input.ReadDouble("value", &m_Value) || input.IsIncremental())
        return true;
    m_Value = 0.0;
    return false;
}

} // namespace Lathe::Math
