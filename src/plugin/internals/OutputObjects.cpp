#include "plugin/internals/OutputObjects.h"

#include "core/RealtimePermission.h"
#include "dsp/Filter.h"

namespace Lathe::Audio::Plugin {

namespace {

void UpdateOutputs(DSP::IFilter& filter, Core::ILock* processLock) {
    const System::CRealtimeAutoLock lock(processLock);
    filter.UpdateOutputs();
}

template <class TObjects, class V>
void ShowChanged(TObjects& objects, const Containers::IConstValueVector<V>& values,
                 DSP::IDirtyFlags& flags) {
    const int count = objects.GetCount();
    for (int i = 0; i < count; ++i) {
        Core::IDirty& flag = flags.GetElement(i);
        if (!flag.IsDirty())
            continue;
        flag.ClearDirty();
        objects[i].Show(values.GetValue(i));
    }
}

} // namespace

COutputObjects::COutputObjects(const DSP::IFilter& filter)
    : m_OutputParams(filter.GetOutputParamsInfo().GetCount()),
      m_OutputStrings(filter.GetOutputStringsInfo(), m_OutputLock),
      m_OutputCurves(filter.GetOutputCurvesInfo(), m_OutputLock),
      m_OutputSurfaces(filter.GetOutputSurfacesInfo(), m_OutputLock),
      m_OutputCustomProperties(filter.GetOutputCustomPropertiesInfo(), m_OutputLock) {
    for (int i = 0; i < m_OutputParams.GetCount(); ++i)
        m_OutputParams[i].SetInfo(filter.GetOutputParamsInfo().GetElement(i));
}

template <class TOperation>
void COutputObjects::ForEach(TOperation operation) {
    ForEachObject(m_OutputStrings, operation);
    ForEachObject(m_OutputCurves, operation);
    ForEachObject(m_OutputSurfaces, operation);
    ForEachObject(m_OutputCustomProperties, operation);
}

bool COutputObjects::IsEmpty() const {
    return m_OutputStrings.GetCount() + m_OutputCurves.GetCount() + m_OutputSurfaces.GetCount() +
               m_OutputCustomProperties.GetCount() ==
           0;
}

bool COutputObjects::Publish(DSP::IFilter& filter, Core::ILock* processLock, bool force) {
    const DSP::IConstParamsValues& params = filter.GetOutputParamsValues();
    for (int i = 0; i < m_OutputParams.GetCount(); ++i)
        m_OutputParams[i].SetValue(params.GetValue(i));
    if (IsEmpty())
        return true;
    if (!Enter(force))
        return false;
    UpdateOutputs(filter, processLock);
    Collect(filter);
    Leave();
    ForEach([](auto& object) { object.NotifyShown(); });
    return true;
}

void COutputObjects::Detach() {
    const Core::CAutoLock lock(m_OutputLock);
    ForEach([](auto& object) { object.ShowDefault(); });
}

bool COutputObjects::Enter(bool force) {
    if (!force)
        return m_OutputLock.TryLock();
    const Core::CRealtimePermission permission;
    m_OutputLock.Lock();
    return true;
}

void COutputObjects::Leave() {
    const Core::CRealtimePermission permission;
    m_OutputLock.Unlock();
}

void COutputObjects::Collect(DSP::IFilter& filter) {
    ShowChanged(m_OutputStrings, filter.GetOutputStrings(), filter.GetOutputStringsDirty());
    ShowChanged(m_OutputCurves, filter.GetOutputCurves(), filter.GetOutputCurvesDirty());
    ShowChanged(m_OutputSurfaces, filter.GetOutputSurfaces(), filter.GetOutputSurfacesDirty());
    ShowChanged(m_OutputCustomProperties, filter.GetOutputCustomProperties(),
                filter.GetOutputCustomPropertiesDirty());
}

} // namespace Lathe::Audio::Plugin
