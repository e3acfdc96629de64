#include "dsp/values/RefCountValues.h"

#include "datamodel/objects/DynamicPropertyValue.h"
#include "math/Constant.h"
#include "math/FunctionsLibrary.h"
#include "math/PlainFunction.h"

namespace Lathe::Audio::DSP {

template <>
const char* GetUnsetValue<const char*>() {
    return "";
}

template <>
const Math::IFunction& GetUnsetValue<const Math::IFunction&>() {
    static const Math::CConstantFunction zero(0.0);
    return zero;
}

template <>
const Math::IBinaryFunction& GetUnsetValue<const Math::IBinaryFunction&>() {
    static const Math::CConstantBinaryFunction zero(0.0);
    return zero;
}

template <>
const DataModel::Objects::IDynamicPropertyValue&
GetUnsetValue<const DataModel::Objects::IDynamicPropertyValue&>() {
    static const DataModel::Objects::CEmptyDynamicPropertyValue empty;
    return empty;
}

} // namespace Lathe::Audio::DSP
