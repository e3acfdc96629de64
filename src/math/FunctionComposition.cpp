#include "math/FunctionComposition.h"

namespace Lathe::Math {

namespace {

constexpr const char* FunctionKey = "function";
constexpr const char* ConstFunctionKey = "constFunction";
constexpr const char* BinaryFunctionKey = "binaryFunction";

} // namespace

bool CConstantComposition::Serialize(Serialization::IWriteDataStream& output) const {
    const bool function = m_Function.Serialize(output, FunctionKey);
    return m_ConstFunction.Serialize(output, ConstFunctionKey) && function;
}

bool CConstantComposition::DeSerialize(const Serialization::IReadDataStream& input) {
    const bool function = m_Function.DeSerialize(input, FunctionKey);
    return m_ConstFunction.DeSerialize(input, ConstFunctionKey) && function;
}

bool CBinaryFunctionComposition::Serialize(Serialization::IWriteDataStream& output) const {
    const bool function = m_Function.Serialize(output, FunctionKey);
    return m_BinaryFunction.Serialize(output, BinaryFunctionKey) && function;
}

bool CBinaryFunctionComposition::DeSerialize(const Serialization::IReadDataStream& input) {
    const bool function = m_Function.DeSerialize(input, FunctionKey);
    return m_BinaryFunction.DeSerialize(input, BinaryFunctionKey) && function;
}

} // namespace Lathe::Math
