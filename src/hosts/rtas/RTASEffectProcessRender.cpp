// The block.
#include "core/Realtime.h"
#include "hosts/rtas/RTASEffectProcess.h"
#include "hosts/rtas/RTASTransportInfo.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace LatheExt::RTASPlugin {

using namespace Lathe::Audio;

namespace {

constexpr double SilenceThreshold = 1e-10;
constexpr int MaxOutputBytes = 3;

// A dynamic vector as the filter sees it.
template <class TVector>
class TEventsView : public Lathe::Containers::IConstVector<MIDI::CMIDIEvent> {
public:
    explicit TEventsView(const TVector& events) LATHE_REALTIME : m_Events(events) {}

    int GetCount() const LATHE_REALTIME override { return m_Events.GetCount(); }
    const MIDI::CMIDIEvent& GetElement(int index) const LATHE_REALTIME override {
        return m_Events[index];
    }

private:
    const TVector& m_Events;
};

} // namespace

void CRTASEffectProcess::RenderAudio(float** inputs, float** outputs, int numSamples) {
    TakeMIDIEvents(numSamples);
    m_Internals.GetBypassManager().SetBypass(m_Bypass.load(std::memory_order_relaxed));
    AimStreams(inputs, outputs, numSamples);
    ProcessStreams(numSamples, IsSilent(inputs, numSamples));
    if (m_OutputStreams.empty())
        PassThrough(inputs, outputs, numSamples);
    PublishOutputs();
    m_MIDIEvents.SetCount(0);
    m_Internals.EndBlock();
}

// The settings see every event, the filter as many as there is room for.
void CRTASEffectProcess::TakeMIDIEvents(int numSamples) {
    if (!m_MIDIInputNode || !m_MIDIInputNode->HasStream())
        return;
    const long bufferSize = m_MIDIInputNode->GetStreamBufferSize();
    if (m_MIDIInputNode->GetBufferSize() != bufferSize)
        m_MIDIInputNode->SetBufferSize(bufferSize);
    if (m_MIDIInputNode->FetchEvents(numSamples) != 0)
        return;
    bool hasControlChange = false;
    const long count = m_MIDIInputNode->GetEventCount();
    for (long i = 0; i < count; ++i) {
        const RTASMIDIEvent& event = m_MIDIInputNode->GetEvent(i);
        m_InputEvent = MIDI::CMIDIEvent(event.data, event.length, event.offset);
        if (m_MIDIEvents.GetCount() < s_MaxFilterEvents)
            m_MIDIEvents.Append(m_InputEvent);
        hasControlChange |= m_Internals.HandleMIDIEvent(m_InputEvent, m_InputMessage);
    }
    if (hasControlChange)
        m_Internals.GetMIDIController().GetLastMessage().Set(m_InputMessage, true);
}

int CRTASEffectProcess::GetConnectedInputs() const {
    return std::min<int>(GetNumInputs(), static_cast<int>(m_InputStreams.size()));
}

void CRTASEffectProcess::AimStreams(float** inputs, float** outputs, int numSamples) {
    const auto aim = [numSamples](CStreams& streams, float** buffers, short connected,
                                  float* cell) {
        for (std::size_t i = 0; i < streams.size(); ++i) {
            const bool isConnected = static_cast<int>(i) < connected;
            streams[i] = DSP::CAudioStream(isConnected ? buffers[i] : cell, 0, numSamples,
                                           isConnected ? 1 : 0, false);
        }
    };
    aim(m_InputStreams, inputs, GetNumInputs(), &m_SilentCell);
    aim(m_OutputStreams, outputs, GetNumOutputs(), &m_DummyCell);
}

bool CRTASEffectProcess::IsSilent(float** inputs, int numSamples) const {
    const int channels = GetConnectedInputs();
    for (int channel = 0; channel < channels; ++channel) {
        for (int i = 0; i < numSamples; ++i) {
            if (static_cast<double>(std::fabs(inputs[channel][i])) > SilenceThreshold)
                return false;
        }
    }
    return true;
}

void CRTASEffectProcess::ProcessStreams(int numSamples, bool isSilent) {
    DSP::CAudioStreams inputs(m_InputStreams.data(), static_cast<int>(m_InputStreams.size()),
                              false);
    DSP::CAudioStreams outputs(m_OutputStreams.data(), static_cast<int>(m_OutputStreams.size()),
                               false);
    const CRTASTransportInfo transport(m_HostTransport, m_Internals.GetSampleRate());
    const TEventsView<CMIDIEvents> events(m_MIDIEvents);
    Plugin::CProcessIO io;
    io.m_pInputs = &inputs;
    io.m_pOutputs = &outputs;
    io.m_SamplesCount = numSamples;
    io.m_pVariations = m_Internals.GetPropertiesVariations(numSamples);
    io.m_pMIDIEvents = &events;
    io.m_pTransportInfo = m_HostTransport ? &transport : nullptr;

    m_Internals.LockProcessing();
    if (isSilent && inputs.GetCount() > 0)
        m_Internals.GetBypassManager().ProcessSilence(io);
    else
        m_Internals.GetBypassManager().Process(io);
    m_Internals.UnlockProcessing();
    m_Internals.AdvanceOutputSync(numSamples);
    if (io.m_pVariations)
        m_Internals.CommitVariations();
}

// Of a filter that only listens.
void CRTASEffectProcess::PassThrough(float** inputs, float** outputs, int numSamples) const {
    const auto samples = static_cast<std::size_t>(std::max(numSamples, 0));
    for (int i = 0; i < GetNumOutputs(); ++i) {
        if (i < GetNumInputs())
            std::memmove(outputs[i], inputs[i], samples * sizeof(float));
        else
            std::fill_n(outputs[i], samples, 0.0f);
    }
}

void CRTASEffectProcess::PublishOutputs() {
    if (m_Internals.GetOutputSync().IsTimeToSync()) {
        m_Internals.GetOutputSync().ResetCounter();
        PushOutputs();
        m_OutputsPending = !m_Internals.PublishOutputs(false);
    }
    if (m_OutputsPending)
        m_OutputsPending = !m_Internals.PublishOutputs(false);
}

void CRTASEffectProcess::PushOutputs() {
    m_Internals.ComputeOutputs();
    const DSP::IConstParamsValues& values = m_Internals.GetFilter()->GetOutputParamsValues();
    const auto& settings = m_Internals.GetMIDIController().GetOutputSettings();
    for (int i = 0; i < m_OutputAdapters.GetCount(); ++i) {
        if (settings.GetElement(i).IsAutomationEnabled())
            m_OutputAdapters[i].SetValue(values.GetValue(i));
        else
            m_OutputAdapters[i].SetValueQuietly(values.GetValue(i));
        if (m_MIDIOutputNode)
            PostOutputEvent(i);
    }
}

void CRTASEffectProcess::PostOutputEvent(int output) {
    if (!m_Internals.MakeOutputMIDIEvent(output, m_OutputEvent) || m_OutputEvent.GetLength() == 0)
        return;
    RTASMIDIEvent event{};
    event.length = std::min(m_OutputEvent.GetLength(), MaxOutputBytes);
    std::copy_n(m_OutputEvent.GetData(), event.length, event.data);
    m_MIDIOutputNode->Post(event);
}

} // namespace LatheExt::RTASPlugin
