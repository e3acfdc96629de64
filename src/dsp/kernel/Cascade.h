// Two channels of gain and three sections run together: what each stage would give after the other,
// to the bit, in a fraction of the time.
//
// A block: Aim, then each channel's owner starts its stages and says which they are, Run, then the
// owners end them. Coefficients and history stay the sections' own.
#pragma once

#include "core/Realtime.h"
#include "dsp/kernel/CascadeLanes.h"

namespace Lathe::Audio::DSP {
struct CFilterProcessData;
class CMidSideMatrix;
class IConstFilterPropertiesVariations;
} // namespace Lathe::Audio::DSP

namespace Lathe::Audio::DSP::Filters {
class CBiquadFilter;
class CGain;
} // namespace Lathe::Audio::DSP::Filters

namespace Lathe::Audio::DSP::Kernel {

struct SCascadeVersion;

// A channel's stages, each of one channel.
struct SCascadeChannel {
    Filters::CGain* m_Gain = nullptr;
    // In the order of the signal.
    Filters::CBiquadFilter* m_Sections[Sections] = {};
    // Of ramp in this block, the same for all channels; 0 where nothing moves.
    int m_GainOrders = 0;
    int m_SectionOrders = 0;
};

// A filter of one channel whose stages a cascade can run: StartCascade says which they are, and
// starts a block of samples; EndCascade ends one in which values have moved. The twin is the
// channel that was started or ended before, or null.
template <class F>
concept CascadeFilter = requires(F& filter, SCascadeChannel& channel,
                                 const IConstFilterPropertiesVariations* variations, int number,
                                 const F* twin) {
    filter.StartCascade(channel, variations, /*samples*/ number, /*firstParam*/ number, twin);
    filter.EndCascade(twin);
};

class CCascade {
public:
    // Takes the first two streams. False when they can't be run together: fewer streams, streams
    // that have no data or aren't contiguous, outputs that lie over anything but their own input;
    // no samples, no version in use.
    bool Aim(const CFilterProcessData& data) LATHE_REALTIME;
    SCascadeChannel& GetChannel(int channel) LATHE_REALTIME { return m_Channels[channel]; }
    // The matrix around the stages may be null.
    void Run(const CMidSideMatrix* matrix) LATHE_REALTIME;

private:
    // Returns where it has stopped: less than MinGroups before the end.
    template <bool Moving>
    int RunChunks() LATHE_REALTIME;
    void RunRest(int start) LATHE_REALTIME;
    // Whether they flush samples as they come is taken from the chunk before, and left to the next.
    void RunGroups(SCascadeGroups& groups) const LATHE_REALTIME;
    void LoadHistory(SChainHistory& history) const LATHE_REALTIME;
    void StoreHistory(const SChainHistory& history) LATHE_REALTIME;
    void LoadCoefficients(SChainCoefficients& coefficients) const LATHE_REALTIME;
    void ComputeRamps(SChainCoefficients* coefficients, int count) LATHE_REALTIME;
    // The channel's chains give zeros, and have nothing to flush; steady ones.
    bool IsSilent(int channel, int start, int count, const SChainHistory& history,
                  const SChainCoefficients& coefficients) LATHE_REALTIME;
    // The input through matrix and gain.
    void Prepare(float* const (&to)[Channels], int start, int count) LATHE_REALTIME;

    const SCascadeVersion* m_Version = nullptr;
    const float* m_Inputs[Channels] = {};
    float* m_Outputs[Channels] = {};
    int m_Samples = 0;
    const CMidSideMatrix* m_Matrix = nullptr;
    SCascadeChannel m_Channels[Channels];
};

} // namespace Lathe::Audio::DSP::Kernel
