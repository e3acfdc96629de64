#include "math/FunctionsCombination.h"

#include "serialization/DataStream.h"

namespace Lathe::Math {

namespace {

constexpr const char* Func1Key = "func1";
constexpr const char* Func2Key = "func2";
constexpr const char* CombineFunctionKey = "combineFunction";

} // namespace

template <class I>
bool TNFunctionsCombination<I>::Serialize(Serialization::IWriteDataStream& output) const {
    bool result = m_Func1.Serialize(output, Func1Key);
    result &= m_Func2.Serialize(output, Func2Key);
    result &= m_CombineFunction.Serialize(output, CombineFunctionKey);
    return result;
}

template <class I>
bool TNFunctionsCombination<I>::DeSerialize(const Serialization::IReadDataStream& input) {
    bool result = ReadChild(input, Func1Key, m_Func1);
    result &= ReadChild(input, Func2Key, m_Func2);
    result &= m_CombineFunction.DeSerialize(input, CombineFunctionKey);
    return result;
}

template <class I>
bool TNFunctionsCombination<I>::ReadChild(const Serialization::IReadDataStream& input,
                                          const char* name, TFunctionChild<I>& child) const {
    if (child.Read(input, name) || input.IsIncremental())
        return true;
    child.Set(CreateDefaultChild(), true);
    return false;
}

template class TNFunctionsCombination<IFunction>;
template class TNFunctionsCombination<IBinaryFunction>;
template class TNFunctionsCombination<IConstant>;

} // namespace Lathe::Math
