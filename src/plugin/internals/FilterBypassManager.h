// Bypass without a click and without a jump in time: the dry signal is delayed by the filter's
// latency, and fades in and out.
//
// Bypass on: the output fades to the dry signal, then the filter's input fades to silence, then the
// filter runs without input. Bypass off: the same backwards. A filter without latency is switched
// between two blocks.
#pragma once

#include "core/containers/Collection.h"
#include "dsp/Filter.h"
#include "dsp/streams/DynamicAudioStream.h"

namespace Lathe::Audio::Plugin {

using CProcessIO = DSP::CFilterProcessData;

// The ramps, apart from the audio. A ramp ends with the block in which it reaches its end.
class CFilterBypassManagerBase {
public:
    // A ramp in progress turns round where it is.
    void SetBypass(bool bypass) LATHE_REALTIME;

protected:
    using CStreams = CoreUtilities::TDynamicCollection<DSP::CDynamicAudioStream, DSP::IAudioStream>;
    enum ERampState : int { InputRamp, OutputRamp, Steady };

    // To the end at which bypass is now.
    void ResetRamp();
    // A ramp lasts so long, but no fewer samples than the latency. Without latency, or when one of
    // time and sample rate isn't above 0, there are no ramps.
    void SetStep(double milliseconds, int latency);

    // The wet signal during a ramp, and the output of a bypassed filter.
    CStreams m_Scratch;
    // In hertz.
    double m_SampleRate = 0.0;
    ERampState m_RampState = Steady;
    // From 0.0, dry or silent, to 1.0, wet or the input.
    float m_RampPosition = 1.0f;
    // A sample; below 0 while bypassed.
    float m_RampStep = 0.0f;
    // False while bypassed.
    bool m_Active = true;
};

class CFilterBypassManager : public CFilterBypassManagerBase {
public:
    // Before any block, and when none runs; ends a ramp. The filter is not owned. The sample rate
    // is in hertz; the block size is in samples, 0 or less when unknown: a larger block, or a
    // latency that grows, makes room once more when it comes.
    void Init(DSP::IFilter* filter, double sampleRate, int maxBlockSize);
    // Behind Init. 0 switches without a ramp.
    void SetRampTime(double milliseconds);

    // The block through the filter, around it or both. The outputs may lie over the inputs, channel
    // by channel. Variations reach the filter whatever the state. Where there are more outputs than
    // dry signals, these are silent.
    void Process(const CProcessIO& io) LATHE_REALTIME;
    // A block of silent inputs. True when the outputs hold signal, such as what the delay of the
    // dry one still brings; false when they hold zeros.
    bool ProcessSilence(const CProcessIO& io) LATHE_REALTIME;

private:
    class CPaddedStreams;

    // Takes the block's inputs into the delay, and gives the dry signal for its outputs.
    CPaddedStreams PushDry(const CProcessIO& io) LATHE_REALTIME;
    void ShiftDryLine(const CProcessIO& io) LATHE_REALTIME;
    // Keeps what the line holds.
    void MakeDryRoom(int samples) LATHE_REALTIME;
    void ClearScratch(int samples) LATHE_REALTIME;
    void ProcessInputRamp(const CProcessIO& io, const CPaddedStreams& dry) LATHE_REALTIME;
    void ProcessOutputRamp(const CProcessIO& io, const CPaddedStreams& dry) LATHE_REALTIME;
    // True when the ramp has reached its end.
    bool FadeOutput(const CProcessIO& io, const CPaddedStreams& dry) LATHE_REALTIME;
    // Into the scratch streams; the filter's own answer.
    bool RunWithoutInput(const CProcessIO& io) LATHE_REALTIME;

    DSP::IFilter* m_Filter = nullptr;
    // For each input the samples of one latency and behind them the last block.
    CStreams m_DryLine;
    // The samples in use of each stream of the line, which have room for more.
    int m_DrySize = 0;
    // In samples.
    int m_Latency = 0;
};

} // namespace Lathe::Audio::Plugin
