// Preparation, the way of values into a block and out of it, and the timers.
#include "core/Differs.h"
#include "core/RealtimePermission.h"
#include "core/SaturatingCast.h"
#include "dsp/ProcessInfo.h"
#include "plugin/internals/AudioPluginInternalsBase.h"
#include "plugin/internals/ProcessAwareProperty.h"
#include "plugin/midi/MIDICCEvents.h"
#include "serialization/MemDataObject.h"

#include <algorithm>

namespace Lathe::Audio::Plugin {

namespace {

constexpr double BypassRampMilliseconds = 10.0;

class CPreparation {
public:
    explicit CPreparation(CHostActivity& activity) : m_Activity(activity) {
        m_Activity.BeginPreparation();
    }
    ~CPreparation() { m_Activity.EndPreparation(); }
    CPreparation(const CPreparation&) = delete;
    CPreparation& operator=(const CPreparation&) = delete;

private:
    CHostActivity& m_Activity;
};

} // namespace

void CAudioPluginInternalsBase::PrepareToProcess(double sampleRate,
                                                 const DSP::CFilterInitInfo& info) {
    const CPreparation preparation(m_HostActivity);
    m_SampleRate.SetValue(sampleRate);
    m_MaxBlockSize.SetValue(std::max(info.m_MaxBlockSize, 0));
    m_BlockSize = ChooseBlockSize(info.m_MaxBlockSize);
    m_Variations.Setup(*m_Filter, info.m_MaxVariationsOrder);
    m_DefaultOutputSync.SetSampleRate(sampleRate);
    if (info.m_ResetToDefaults)
        ResetToDefaults();
    InitFilter(sampleRate, info);
    StoreChannels(info.m_ConnectedInputs, info.m_ConnectedOutputs);
    InitBypass();
    m_AllInputsPushed = false;
    m_Inputs.WriteProcessData(GetProcessData());
    const int latency = m_Filter->GetLatency();
    PushAllInputs();
    if (m_Filter->GetLatency() != latency) // The inputs have changed it.
        InitBypass();
    ComputeOutputs();
    PublishOutputs(true);
    ForgetSentControllers();
    m_Prepared = true;
}

// A host that doesn't tell has told before: no block needs more room then.
int CAudioPluginInternalsBase::ChooseBlockSize(int maxBlockSize) {
    m_LargestBlockSize = std::max(m_LargestBlockSize, maxBlockSize);
    return maxBlockSize > 0 ? maxBlockSize : m_LargestBlockSize;
}

void CAudioPluginInternalsBase::InitBypass() {
    m_BypassManager.Init(m_Filter.get(), m_SampleRate.GetValue(), m_BlockSize);
    m_BypassManager.SetRampTime(BypassRampMilliseconds);
}

void CAudioPluginInternalsBase::InitFilter(double sampleRate, const DSP::CFilterInitInfo& info) {
    DSP::CFilterInitInfo copy = info;
    // Defaults have been set through the input objects.
    copy.m_ResetToDefaults = false;
    copy.m_MaxBlockSize = m_BlockSize;
    const System::CRealtimeAutoLock lock(GetProcessLock());
    m_Filter->Init(sampleRate, copy);
}

// -1 means as many as the filter's configuration has.
void CAudioPluginInternalsBase::StoreChannels(int inputs, int outputs) {
    const DSP::IIOConfiguration& configuration = m_Filter->GetCurrentIOConfiguration();
    m_InputChannels.SetValue(inputs >= 0 ? inputs : configuration.GetInputs().GetCount());
    m_OutputChannels.SetValue(outputs >= 0 ? outputs : configuration.GetOutputs().GetCount());
}

SProcessData CAudioPluginInternalsBase::GetProcessData() const {
    SProcessData data;
    data.m_MaxBlockSize = m_BlockSize;
    data.m_SampleRate = m_SampleRate.GetValue();
    data.m_Inputs = m_InputChannels.GetValue();
    data.m_Outputs = m_OutputChannels.GetValue();
    return data;
}

void CAudioPluginInternalsBase::ForgetSentControllers() {
    for (std::atomic<int>& value : m_LastOutputCC)
        value.store(-1, std::memory_order_relaxed);
}

void CAudioPluginInternalsBase::ResetToDefaults() {
    if (ApplyDefaultPreset())
        return;
    const int count = m_InputParams ? m_InputParams->GetCount() : 0;
    for (int i = 0; i < count; ++i) {
        DataModel::Objects::ICaptureParam& param = m_InputParams->GetElement(i);
        param.SetValue(param.GetInfo().GetDefault());
    }
    ReadInputObjects(Serialization::CMemDataObject());
}

bool CAudioPluginInternalsBase::SyncParams() {
    if (!m_InputParams)
        return false;
    DSP::CFilterProperties& end = m_Variations.GetEnd();
    DSP::CDynamicParamsValues& values = end.GetParams();
    DSP::IDirtyFlags& dirty = end.GetDirty(DSP::Params);
    const int count = std::min(values.GetCount(), m_InputParams->GetCount() - 1);
    bool changed = false;
    for (int i = 0; i < count; ++i) {
        const double value = m_InputParams->GetElement(i + 1).GetValue();
        if (!Core::Differs(value, values.GetValue(i)))
            continue;
        values.SetValue(i, value);
        dirty.GetElement(i).SetDirty();
        changed = true;
    }
    return changed;
}

// Brings the end state up to what the input objects hold; true if the filter has to see it.
bool CAudioPluginInternalsBase::SyncInputs() {
    const bool paramsChanged = SyncParams();
    const bool objectsChanged = m_Inputs.Sync(m_Variations.GetEnd());
    if (m_AllInputsPushed.load(std::memory_order_relaxed))
        return paramsChanged || objectsChanged;
    MarkAllInputs();
    return true;
}

void CAudioPluginInternalsBase::MarkAllInputs() {
    for (int kind = 0; kind < DSP::InputKinds; ++kind) {
        DSP::IDirtyFlags& dirty = m_Variations.GetEnd().GetDirty(kind);
        const int count = dirty.GetCount();
        for (int i = 0; i < count; ++i)
            dirty.GetElement(i).SetDirty();
    }
}

void CAudioPluginInternalsBase::PushAllInputs() {
    if (SyncInputs()) {
        m_AllInputsPushed = true;
        const System::CRealtimeAutoLock lock(GetProcessLock());
        m_Filter->SetInputValues(m_Variations.GetEnd());
    }
    m_Variations.Commit();
}

const DSP::IConstFilterPropertiesVariations*
CAudioPluginInternalsBase::GetPropertiesVariations(int numSamples) {
    m_HostActivity.BeginBlock();
    if (!SyncInputs())
        return nullptr;
    m_Variations.ComputeRates(numSamples);
    return &m_Variations;
}

void CAudioPluginInternalsBase::LockProcessing() {
    if (m_FilterHasState) {
        const Core::CRealtimePermission permission;
        m_ProcessLock.Lock();
    }
}

void CAudioPluginInternalsBase::UnlockProcessing() {
    if (m_FilterHasState) {
        const Core::CRealtimePermission permission;
        m_ProcessLock.Unlock();
    }
}

void CAudioPluginInternalsBase::AdvanceOutputSync(int numSamples) {
    m_DefaultOutputSync.AddSamples(numSamples);
}

DSP::IOutputDataSync& CAudioPluginInternalsBase::GetOutputSync() {
    DSP::IOutputDataSync* own = m_Filter ? m_Filter->GetOutputDataSync() : nullptr;
    return own ? *own : m_DefaultOutputSync;
}

void CAudioPluginInternalsBase::ComputeOutputs() {
    const System::CRealtimeAutoLock lock(GetProcessLock());
    m_Filter->ResetOutputs();
}

bool CAudioPluginInternalsBase::PublishOutputs(bool force) {
    const bool published = m_Outputs.Publish(*m_Filter, GetProcessLock(), force);
    m_OutputsPending = !published;
    return published;
}

bool CAudioPluginInternalsBase::HandleMIDIEvent(const MIDI::IConstMIDIEvent& event,
                                                CMIDICCMessage& message) {
    return ApplyMIDIEvent(event, m_MIDIController.GetInputSettings(), m_InputParamInfos,
                          m_InputParams, message);
}

bool CAudioPluginInternalsBase::MakeOutputMIDIEvent(int output, MIDI::IMIDIEvent& event) {
    std::atomic<int>& last = m_LastOutputCC[static_cast<std::size_t>(output)];
    const int before = last.load(std::memory_order_relaxed);
    int lastSent = before;
    const bool made =
        MakeControllerEvent(m_MIDIController.GetOutputSettings().GetElement(output),
                            GetOutputParamInfos().GetElement(output),
                            m_Filter->GetOutputParamsValues().GetValue(output), lastSent, event);
    // A load that has made it forget meanwhile wins.
    int expected = before;
    if (made)
        last.compare_exchange_strong(expected, lastSent, std::memory_order_relaxed);
    return made;
}

void CAudioPluginInternalsBase::OnIdleTimer() {
    if (!m_OutputsUpdatedCommand.load() || !m_Prepared || m_LoadingState > 0)
        return;
    if (!m_HostActivity.BeginIdle())
        return;
    UpdateOutputsWhileIdle();
    m_HostActivity.EndIdle();
}

void CAudioPluginInternalsBase::UpdateOutputsWhileIdle() {
    if (!m_Filter->GetOutputDataSync())
        m_DefaultOutputSync.AddSamples(Core::TruncateToInt(CHostActivity::s_TickMilliseconds /
                                                           1000.0 * m_SampleRate.GetValue()));
    const bool pending = m_OutputsPending;
    if (GetOutputSync().IsTimeToSync()) {
        GetOutputSync().ResetCounter();
        PushAllInputs();
        ComputeOutputs();
        if (Core::ICommand* outputsUpdated = m_OutputsUpdatedCommand)
            outputsUpdated->Execute();
        PublishOutputs(false);
    }
    if (pending && m_OutputsPending)
        PublishOutputs(false);
}

} // namespace Lathe::Audio::Plugin
