#include "plugin/internals/ProcessAwareProperty.h"

#include "core/Differs.h"
#include "datamodel/objects/DynamicPropertyValue.h"

namespace Lathe::Audio::Plugin {

namespace {

template <class I>
I* Query(DataModel::Objects::IDynamicPropertyValue& value) {
    return static_cast<I*>(value.QueryInterface(I::InterfaceId()));
}

} // namespace

bool WriteProcessData(DataModel::Objects::IDynamicPropertyValue& value, const SProcessData& data) {
    auto* sampleRate = Query<ISampleRateProperty>(value);
    auto* processData = Query<IProcessDataProperty>(value);
    if (sampleRate && Core::Differs(sampleRate->GetSampleRate(), data.m_SampleRate))
        sampleRate->SetSampleRate(data.m_SampleRate);
    if (processData)
        processData->SetProcessData(data);
    return sampleRate || processData;
}

} // namespace Lathe::Audio::Plugin
