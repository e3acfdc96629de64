#include "plugin/internals/FilterBypassManager.h"

#include "core/Differs.h"
#include "core/RealtimePermission.h"
#include "dsp/ProcessInfo.h"
#include "dsp/streams/EmptyStream.h"
#include "dsp/streams/StreamFunctions.h"

#include <algorithm>
#include <cstring>

namespace Lathe::Audio::Plugin {

// A view of streams, which may be null, with silence where there are fewer than asked for.
class CFilterBypassManager::CPaddedStreams : public DSP::IConstAudioStreams {
public:
    CPaddedStreams(const DSP::IConstAudioStreams* streams, int count, int samples) LATHE_REALTIME
        : m_Streams(streams),
          m_Count(count),
          m_Silence(samples) {}

    int GetCount() const LATHE_REALTIME override { return m_Count; }
    const DSP::IAudioStream& GetElement(int index) const LATHE_REALTIME override {
        if (m_Streams && index < m_Streams->GetCount())
            return m_Streams->GetElement(index);
        return m_Silence;
    }

private:
    const DSP::IConstAudioStreams* m_Streams;
    int m_Count;
    DSP::CEmptyStream m_Silence;
};

namespace {

template <class TStreams>
void SetupStreams(TStreams& streams, int count, int samples) {
    streams.SetCount(count);
    for (int i = 0; i < count; ++i)
        streams[i].SetSize(samples);
    DSP::ClearStreams(streams);
}

int GetOutputsCount(const CProcessIO& io) {
    return io.m_pOutputs ? io.m_pOutputs->GetCount() : 0;
}

void WriteDry(const CProcessIO& io, const DSP::IConstAudioStreams& dry) {
    if (io.m_pOutputs)
        DSP::CopyStreams(dry, *io.m_pOutputs, io.m_SamplesCount);
}

bool HoldsSignal(const DSP::IConstAudioStreams& streams, int samples) {
    for (int channel = 0; channel < streams.GetCount(); ++channel) {
        const DSP::IAudioStream& stream = streams.GetElement(channel);
        const float* data = stream.GetData();
        const int stride = stream.GetStride();
        for (int i = 0; data && i < samples; ++i) {
            if (Core::Differs(data[i * stride], 0.0))
                return true;
        }
    }
    return false;
}

} // namespace

void CFilterBypassManagerBase::SetBypass(bool bypass) {
    if (m_Active == !bypass)
        return;
    m_Active = !bypass;
    m_RampStep = -m_RampStep;
    if (m_RampState != Steady || !Core::Differs(m_RampStep, 0.0))
        return;
    m_RampState = bypass ? OutputRamp : InputRamp;
    m_RampPosition = bypass ? 1.0f : 0.0f;
}

void CFilterBypassManagerBase::ResetRamp() {
    m_RampState = Steady;
    m_RampPosition = m_Active ? 1.0f : 0.0f;
}

void CFilterBypassManagerBase::SetStep(double milliseconds, int latency) {
    // Times come in milliseconds that are floats, so that a second has a little less than 1000.
    constexpr double perSecond = 1.0 / static_cast<double>(0.001f);
    float step = 0.0f;
    if (milliseconds > 0.0 && m_SampleRate > 0.0 && latency > 0) {
        step = static_cast<float>(perSecond / (milliseconds * m_SampleRate));
        step = std::min(step, 1.0f / static_cast<float>(latency));
    }
    // A ramp without steps would never end.
    if (!Core::Differs(step, 0.0))
        m_RampState = Steady;
    m_RampStep = m_Active ? step : -step;
}

void CFilterBypassManager::Init(DSP::IFilter* filter, double sampleRate, int maxBlockSize) {
    m_Filter = filter;
    m_SampleRate = sampleRate;
    m_Latency = std::max(filter->GetLatency(), 0);
    const DSP::IIOConfiguration& channels = filter->GetCurrentIOConfiguration();
    const int inputs = channels.GetInputs().GetCount();
    const int outputs = channels.GetOutputs().GetCount();
    const int samples = std::max(maxBlockSize, 0);
    SetupStreams(m_DryLine, inputs, m_Latency + samples);
    m_DrySize = m_Latency;
    SetupStreams(m_Scratch, std::max(inputs, outputs), samples);
    ResetRamp();
}

void CFilterBypassManager::SetRampTime(double milliseconds) {
    SetStep(milliseconds, m_Latency);
}

void CFilterBypassManager::Process(const CProcessIO& io) {
    const CPaddedStreams dry = PushDry(io);
    if (m_RampState == InputRamp) {
        ProcessInputRamp(io, dry);
    } else if (m_RampState == OutputRamp) {
        ProcessOutputRamp(io, dry);
    } else if (m_Active) {
        m_Filter->Process(io);
    } else {
        RunWithoutInput(io);
        WriteDry(io, dry);
    }
}

bool CFilterBypassManager::ProcessSilence(const CProcessIO& io) {
    const CPaddedStreams dry = PushDry(io);
    // An input ramp has nothing to fade: it stays where it is.
    if (m_RampState != OutputRamp && m_Active)
        return m_Filter->ProcessSilence(io);
    // The outputs may lie over the dry signal.
    const bool isDrySignal = HoldsSignal(dry, io.m_SamplesCount);
    const bool isWetSignal = RunWithoutInput(io);
    if (m_RampState != OutputRamp) {
        WriteDry(io, dry);
        return isDrySignal;
    }
    if (FadeOutput(io, dry))
        m_RampState = Steady;
    return isDrySignal || isWetSignal;
}

CFilterBypassManager::CPaddedStreams CFilterBypassManager::PushDry(const CProcessIO& io) {
    m_Latency = std::max(m_Filter->GetLatency(), 0);
    if (m_Latency > 0) {
        ShiftDryLine(io);
        return {&m_DryLine, GetOutputsCount(io), io.m_SamplesCount};
    }
    m_DrySize = 0;
    return {io.m_pInputs, GetOutputsCount(io), io.m_SamplesCount};
}

void CFilterBypassManager::ShiftDryLine(const CProcessIO& io) {
    MakeDryRoom(m_Latency + io.m_SamplesCount);
    const CPaddedStreams inputs(io.m_pInputs, m_DryLine.GetCount(), io.m_SamplesCount);
    const int kept = std::min(m_Latency, m_DrySize);
    for (int channel = 0; channel < m_DryLine.GetCount(); ++channel) {
        float* data = m_DryLine[channel].GetData();
        std::memmove(data + (m_Latency - kept), data + (m_DrySize - kept),
                     static_cast<std::size_t>(kept) * sizeof(float));
        // Where the latency has grown beyond what is remembered.
        std::fill_n(data, m_Latency - kept, 0.0f);
        DSP::CAudioStream block;
        block.Aim(data + m_Latency, io.m_SamplesCount);
        DSP::CopyStream(inputs.GetElement(channel), block, io.m_SamplesCount);
    }
    m_DrySize = m_Latency + io.m_SamplesCount;
}

void CFilterBypassManager::MakeDryRoom(int samples) {
    for (int channel = 0; channel < m_DryLine.GetCount(); ++channel) {
        DSP::CDynamicAudioStream& line = m_DryLine[channel];
        if (line.GetSize() >= samples)
            continue;
        const Core::CRealtimePermission permission;
        DSP::CDynamicAudioStream larger;
        larger.SetSize(samples);
        DSP::CopyStream(line, larger, m_DrySize);
        std::fill(larger.GetData() + m_DrySize, larger.GetData() + samples, 0.0f);
        line = larger;
    }
}

void CFilterBypassManager::ClearScratch(int samples) {
    for (int channel = 0; channel < m_Scratch.GetCount(); ++channel) {
        const Core::CRealtimePermission permission;
        m_Scratch[channel].SetSize(samples);
    }
    DSP::ClearStreams(m_Scratch);
}

void CFilterBypassManager::ProcessInputRamp(const CProcessIO& io, const CPaddedStreams& dry) {
    const int samples = io.m_SamplesCount;
    ClearScratch(samples);
    const CPaddedStreams silence(nullptr, m_Scratch.GetCount(), samples);
    const CPaddedStreams inputs(io.m_pInputs, m_Scratch.GetCount(), samples);
    const bool goesOn =
        DSP::CrossfadeStreams(silence, inputs, m_Scratch, samples, &m_RampPosition, m_RampStep);
    CProcessIO faded = io;
    faded.m_pInputs = &m_Scratch;
    faded.m_pOutputs = &m_Scratch;
    m_Filter->Process(faded);
    WriteDry(io, dry);
    if (goesOn || samples == 0)
        return;
    m_RampState = m_Active ? OutputRamp : Steady;
    m_RampPosition = 0.0f;
}

void CFilterBypassManager::ProcessOutputRamp(const CProcessIO& io, const CPaddedStreams& dry) {
    ClearScratch(io.m_SamplesCount);
    CProcessIO wet = io;
    wet.m_pOutputs = &m_Scratch;
    m_Filter->Process(wet);
    if (!FadeOutput(io, dry))
        return;
    m_RampState = m_Active ? Steady : InputRamp;
    m_RampPosition = 1.0f;
}

bool CFilterBypassManager::FadeOutput(const CProcessIO& io, const CPaddedStreams& dry) {
    if (!io.m_pOutputs)
        return true;
    const CPaddedStreams wet(&m_Scratch, dry.GetCount(), io.m_SamplesCount);
    return !DSP::CrossfadeStreams(dry, wet, *io.m_pOutputs, io.m_SamplesCount, &m_RampPosition,
                                  m_RampStep) &&
           io.m_SamplesCount > 0;
}

bool CFilterBypassManager::RunWithoutInput(const CProcessIO& io) {
    ClearScratch(io.m_SamplesCount);
    CProcessIO silent = io;
    silent.m_pInputs = nullptr;
    silent.m_pOutputs = &m_Scratch;
    return m_Filter->ProcessSilence(silent);
}

} // namespace Lathe::Audio::Plugin
