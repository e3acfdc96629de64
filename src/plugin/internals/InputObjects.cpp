#include "plugin/internals/InputObjects.h"

#include "dsp/properties/FilterProperties.h"
#include "plugin/internals/ProcessAwareProperty.h"

namespace Lathe::Audio::Plugin {

namespace {

template <class TObjects, class V>
bool TakeItems(TObjects& objects, DSP::TRefCountValues<V>& values, DSP::IDirtyFlags& flags) {
    bool moved = false;
    const int count = objects.GetCount();
    for (int i = 0; i < count; ++i) {
        if (!objects[i].TakeItem(values, i))
            continue;
        flags.GetElement(i).SetDirty();
        moved = true;
    }
    return moved;
}

} // namespace

CInputObjects::CInputObjects(const DSP::IFilter& filter)
    : m_InputCurves(filter.GetInputCurvesInfo(), m_InputLock),
      m_InputStrings(filter.GetInputStringsInfo(), m_InputLock),
      m_InputSurfaces(filter.GetInputSurfacesInfo(), m_InputLock),
      m_InputCustomProperties(filter.GetInputCustomPropertiesInfo(), m_InputLock) {}

template <class TOperation>
void CInputObjects::ForEach(TOperation operation) {
    ForEachObject(m_InputStrings, operation);
    ForEachObject(m_InputCurves, operation);
    ForEachObject(m_InputSurfaces, operation);
    ForEachObject(m_InputCustomProperties, operation);
}

bool CInputObjects::IsEmpty() const {
    return m_InputStrings.GetCount() + m_InputCurves.GetCount() + m_InputSurfaces.GetCount() +
               m_InputCustomProperties.GetCount() ==
           0;
}

bool CInputObjects::Sync(DSP::CFilterProperties& end) {
    if (IsEmpty())
        return false;
    const System::CRealtimeAutoLock lock(m_InputLock);
    const bool strings = TakeItems(m_InputStrings, end.GetStrings(), end.GetDirty(DSP::Strings));
    const bool curves = TakeItems(m_InputCurves, end.GetCurves(), end.GetDirty(DSP::Curves));
    const bool surfaces =
        TakeItems(m_InputSurfaces, end.GetSurfaces(), end.GetDirty(DSP::Surfaces));
    const bool customProperties = TakeItems(m_InputCustomProperties, end.GetCustomProperties(),
                                            end.GetDirty(DSP::CustomProperties));
    return strings || curves || surfaces || customProperties;
}

void CInputObjects::PurgeRetired() {
    ForEach([](auto& object) { object.PurgeRetired(); });
}

void CInputObjects::WriteProcessData(const SProcessData& data) {
    ForEachObject(m_InputCustomProperties, [&](auto& object) {
        object.ModifyValue([&](DataModel::Objects::IDynamicPropertyValue& value) {
            return Plugin::WriteProcessData(value, data);
        });
    });
}

void CInputObjects::AddValueChangedCommand(Core::ICommand& command) {
    ForEach([&](auto& object) { object.GetValueChangedEvent().AddCommand(command); });
}

void CInputObjects::RemoveValueChangedCommand(Core::ICommand& command) {
    ForEach([&](auto& object) { object.GetValueChangedEvent().RemoveCommand(command); });
}

} // namespace Lathe::Audio::Plugin
