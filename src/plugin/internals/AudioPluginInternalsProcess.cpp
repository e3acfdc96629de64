// Preparation, the way of values into a block and out of it, and the timers.
#include "core/Differs.h"
#include "core/RealtimePermission.h"
#include "core/SaturatingCast.h"
#include "dsp/ProcessInfo.h"
#include "plugin/interfaces/PresetsManager.h"
#include "plugin/internals/AudioPluginInternalsBase.h"
#include "plugin/internals/ProcessAwareProperty.h"
#include "plugin/midi/MIDICCEvents.h"

#include <algorithm>

namespace Lathe::Audio::Plugin {

namespace {

constexpr double BypassRampMilliseconds = 10.0;
constexpr int IdleMilliseconds = 50;
// A host that gave no sign for longer than this is taken not to be processing.
constexpr int HostSilentMilliseconds = 1499;

} // namespace

void CAudioPluginInternalsBase::PrepareToProcess(double sampleRate,
                                                 const DSP::CFilterInitInfo& info) {
    m_PrepareSeen = true;
    const Core::CAutoLock running(m_RunningFlag);
    m_RunningFlag.m_Value = true;
    m_SampleRate.SetValue(sampleRate);
    m_MaxBlockSize.SetValue(std::max(info.m_MaxBlockSize, 0));
    if (info.m_MaxBlockSize > 0)
        m_LargestBlockSize = info.m_MaxBlockSize;
    m_Variations.Setup(*m_Filter, info.m_MaxVariationsOrder);
    m_DefaultOutputSync.SetSampleRate(sampleRate);
    if (info.m_ResetToDefaults)
        ResetToDefaults();
    InitFilter(sampleRate, info);
    StoreChannels(info.m_ConnectedInputs, info.m_ConnectedOutputs);
    m_BypassManager.Init(m_Filter.get(), sampleRate, m_LargestBlockSize);
    m_BypassManager.SetRampTime(BypassRampMilliseconds);
    m_AllInputsPushed = false;
    m_Inputs.WriteProcessData(GetProcessData());
    PushAllInputs();
    ComputeOutputs();
    PublishOutputs(true);
    ForgetSentControllers();
    m_Prepared = true;
    m_PrepareSeen = true;
}

void CAudioPluginInternalsBase::InitFilter(double sampleRate, const DSP::CFilterInitInfo& info) {
    DSP::CFilterInitInfo copy = info;
    // Defaults have been set through the input objects.
    copy.m_ResetToDefaults = false;
    // A host that doesn't tell has told before: no block needs more room then.
    if (copy.m_MaxBlockSize <= 0)
        copy.m_MaxBlockSize = m_LargestBlockSize;
    LockProcessing();
    m_Filter->Init(sampleRate, copy);
    UnlockProcessing();
}

// -1 means as many as the filter's configuration has.
void CAudioPluginInternalsBase::StoreChannels(int inputs, int outputs) {
    const DSP::IIOConfiguration& configuration = m_Filter->GetCurrentIOConfiguration();
    m_InputChannels.SetValue(inputs >= 0 ? inputs : configuration.GetInputs().GetCount());
    m_OutputChannels.SetValue(outputs >= 0 ? outputs : configuration.GetOutputs().GetCount());
}

SProcessData CAudioPluginInternalsBase::GetProcessData() const {
    SProcessData data;
    data.m_MaxBlockSize = static_cast<int>(m_MaxBlockSize.GetValue());
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
    if (IPreset* preset = m_PresetLists.GetDefaultPreset()) {
        preset->Apply();
        return;
    }
    const int count = m_InputParams ? m_InputParams->GetCount() : 0;
    for (int i = 0; i < count; ++i) {
        DataModel::Objects::ICaptureParam& param = m_InputParams->GetElement(i);
        param.SetValue(param.GetInfo().GetDefault());
    }
    m_Inputs.SetToDefaults();
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
        LockProcessing();
        m_Filter->SetInputValues(m_Variations.GetEnd());
        UnlockProcessing();
    }
    m_Variations.Commit();
}

const DSP::IConstFilterPropertiesVariations*
CAudioPluginInternalsBase::GetPropertiesVariations(int numSamples) {
    NoteHost();
    if (!SyncInputs())
        return nullptr;
    m_Variations.ComputeRates(numSamples);
    return &m_Variations;
}

// A block is a sign of the host. The idle timer clears m_RunningFlag and then looks for signs, this
// leaves one and then looks at the flag: one of the two sees the other, so that the timer never
// works beside a block. The wait is for one idle tick, and only after a long pause of a host that
// wants outputs without blocks.
void CAudioPluginInternalsBase::NoteHost() {
    if (!m_OutputsUpdatedCommand.load(std::memory_order_relaxed))
        return;
    m_PrepareSeen = true;
    if (m_RunningFlag.m_Value)
        return;
    const System::CRealtimeAutoLock running(m_RunningFlag);
    m_RunningFlag.m_Value = true;
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
    LockProcessing();
    m_Filter->ResetOutputs();
    UnlockProcessing();
}

bool CAudioPluginInternalsBase::PublishOutputs(bool force) {
    return m_Outputs.Publish(*m_Filter, GetProcessLock(), force);
}

bool CAudioPluginInternalsBase::HandleMIDIEvent(const MIDI::IConstMIDIEvent& event,
                                                CMIDICCMessage& message) {
    return ApplyMIDIEvent(event, m_MIDIController.GetInputSettings(), m_InputParamInfos,
                          m_InputParams, message);
}

bool CAudioPluginInternalsBase::MakeOutputMIDIEvent(int output, MIDI::IMIDIEvent& event) {
    std::atomic<int>& last = m_LastOutputCC[static_cast<std::size_t>(output)];
    int lastSent = last.load(std::memory_order_relaxed);
    const bool made =
        MakeControllerEvent(m_MIDIController.GetOutputSettings().GetElement(output),
                            GetOutputParamInfos().GetElement(output),
                            m_Filter->GetOutputParamsValues().GetValue(output), lastSent, event);
    last.store(lastSent, std::memory_order_relaxed);
    return made;
}

void CAudioPluginInternalsBase::OnIdleTimer() {
    if (!m_OutputsUpdatedCommand.load() || !m_Prepared || m_LoadingState > 0)
        return;
    CountIdleTick();
    if (m_RunningFlag.m_Value || !m_RunningFlag.TryLock())
        return;
    if (!m_RunningFlag.m_Value)
        UpdateOutputsWhileIdle();
    m_RunningFlag.Unlock();
}

void CAudioPluginInternalsBase::CountIdleTick() {
    if (m_PrepareSeen.exchange(false) || !m_RunningFlag.m_Value) {
        m_IdleTicks = 0;
        return;
    }
    ++m_IdleTicks;
    if (m_IdleTicks * IdleMilliseconds <= HostSilentMilliseconds || !m_RunningFlag.TryLock())
        return;
    m_RunningFlag.m_Value = false;
    if (m_PrepareSeen) // The host came back meanwhile.
        m_RunningFlag.m_Value = true;
    m_IdleTicks = 0;
    m_RunningFlag.Unlock();
}

void CAudioPluginInternalsBase::UpdateOutputsWhileIdle() {
    if (!m_Filter->GetOutputDataSync())
        m_DefaultOutputSync.AddSamples(
            Core::TruncateToInt(IdleMilliseconds / 1000.0 * m_SampleRate.GetValue()));
    const bool pending = m_OutputsPending;
    if (GetOutputSync().IsTimeToSync()) {
        GetOutputSync().ResetCounter();
        PushAllInputs();
        ComputeOutputs();
        if (Core::ICommand* outputsUpdated = m_OutputsUpdatedCommand)
            outputsUpdated->Execute();
        m_OutputsPending = !PublishOutputs(false);
    }
    if (pending && m_OutputsPending)
        m_OutputsPending = !PublishOutputs(false);
}

} // namespace Lathe::Audio::Plugin
