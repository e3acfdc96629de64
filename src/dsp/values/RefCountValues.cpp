#include "dsp/values/RefCountValues.h"

#include "datamodel/objects/DynamicPropertyValue.h"
#include "math/Constant.h"

namespace Lathe::Audio::DSP {

namespace {

// Made before any audio runs: a static inside a function would lock on its first use.
const Math::CConstantFunction s_NoCurve(0.0);
const Math::CConstantBinaryFunction s_NoSurface(0.0);
const DataModel::Objects::CEmptyDynamicPropertyValue s_NoCustomProperty;

} // namespace

template <>
const char* GetUnsetValue<const char*>() LATHE_REALTIME {
    return "";
}

template <>
const Math::IFunction& GetUnsetValue<const Math::IFunction&>() LATHE_REALTIME {
    return s_NoCurve;
}

template <>
const Math::IBinaryFunction& GetUnsetValue<const Math::IBinaryFunction&>() LATHE_REALTIME {
    return s_NoSurface;
}

template <>
const DataModel::Objects::IDynamicPropertyValue&
GetUnsetValue<const DataModel::Objects::IDynamicPropertyValue&>() LATHE_REALTIME {
    return s_NoCustomProperty;
}

} // namespace Lathe::Audio::DSP
