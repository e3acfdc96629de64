// The loop over the frames of a ramp that gives a section its coefficients, which every version
// compiles with lanes of its own.
#pragma once

#include "dsp/filters/SectionFormulas.h"
#include "dsp/filters/SectionRamp.h"
#include "dsp/kernel/CascadeLanes.h"

namespace Lathe::Audio::DSP::Kernel {

// L stands in an unnamed namespace. Its member CDoubles is a vector of doubles: those of one frame
// or of several.
template <class L>
class TCascadeFormulas {
public:
    static void Compute(const SSectionFrames& section) {
        using Filters::ESectionFormula;
        switch (section.m_Formula) {
        case ESectionFormula::Peak:
            return ForChannels<ESectionFormula::Peak>(section);
        case ESectionFormula::LowShelf:
            return ForChannels<ESectionFormula::LowShelf>(section);
        case ESectionFormula::HighShelf:
            return ForChannels<ESectionFormula::HighShelf>(section);
        }
    }

private:
    using T = typename L::CDoubles;
    static constexpr int s_Doubles = static_cast<int>(sizeof(T) / sizeof(double));
    static constexpr int s_FrameStride =
        static_cast<int>(sizeof(SChainCoefficients) / sizeof(double));
    static constexpr int s_PairSize = static_cast<int>(Channels * sizeof(double));

    template <Filters::ESectionFormula Formula>
    static void ForChannels(const SSectionFrames& section) {
        if (section.m_Ramp->m_Channels == 1)
            ForFrames<Formula, 1>(section);
        else
            ForFrames<Formula, Channels>(section);
    }

    template <Filters::ESectionFormula Formula, int RampChannels>
    static void ForFrames(const SSectionFrames& section) {
        constexpr int step = s_Doubles / RampChannels;
        static_assert(GroupFrames % step == 0);
        // Copies, which no store to the coefficients can change.
        const Filters::SRampFrames& ramp = *section.m_Ramp;
        SChainCoefficients* const to = section.m_To;
        const int frames = section.m_Frames;
        const int chain = section.m_Chain;
        for (int at = 0; at < frames; at += step) {
            const int i = RampChannels * at;
            const Filters::TBiquadCoefficients<T> c = Filters::ComputeSection<Formula>(
                Load(ramp.m_Sin + i), Load(ramp.m_Cos + i), Load(ramp.m_Root + i),
                Load(ramp.m_HalfBandwidth + i));
            Store<RampChannels>(&to[at].m_b0[chain], c.m_b0);
            Store<RampChannels>(&to[at].m_b1[chain], c.m_b1);
            Store<RampChannels>(&to[at].m_b2[chain], c.m_b2);
            Store<RampChannels>(&to[at].m_a1[chain], c.m_a1);
            Store<RampChannels>(&to[at].m_a2[chain], c.m_a2);
        }
    }

    static T Load(const double* from) {
        T values;
        __builtin_memcpy(&values, from, sizeof values);
        return values;
    }

    // Both channels of each frame, at the same place in the coefficients of the frames.
    template <int RampChannels>
    static void Store(double* to, const T& values) {
        if constexpr (RampChannels == 1) {
            // Frames in twos, of which each has its number in both channels.
            StorePairs(to, 2 * s_FrameStride, SpreadEven(values));
            StorePairs(to + s_FrameStride, 2 * s_FrameStride, SpreadOdd(values));
        } else {
            StorePairs(to, s_FrameStride, values);
        }
    }
    static void StorePairs(double* to, int stride, const T& values) {
        const char* from = reinterpret_cast<const char*>(&values);
        for (int pair = 0; pair < s_Doubles / Channels; ++pair)
            __builtin_memcpy(to + pair * stride, from + pair * s_PairSize, s_PairSize);
    }
    static T SpreadEven(const T& v) {
        if constexpr (s_Doubles == 4)
            return __builtin_shufflevector(v, v, 0, 0, 2, 2);
        else
            return __builtin_shufflevector(v, v, 0, 0);
    }
    static T SpreadOdd(const T& v) {
        if constexpr (s_Doubles == 4)
            return __builtin_shufflevector(v, v, 1, 1, 3, 3);
        else
            return __builtin_shufflevector(v, v, 1, 1);
    }
};

} // namespace Lathe::Audio::DSP::Kernel
