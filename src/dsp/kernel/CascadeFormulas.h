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
    static void Compute(const SSectionRamp& section) {
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

    template <Filters::ESectionFormula Formula>
    static void ForChannels(const SSectionRamp& section) {
        if (section.m_Ramp->m_Channels == 1)
            ForFrames<Formula, 1>(section);
        else
            ForFrames<Formula, Channels>(section);
    }

    template <Filters::ESectionFormula Formula, int RampChannels>
    static void ForFrames(const SSectionRamp& section) {
        constexpr int step = static_cast<int>(sizeof(T) / sizeof(double)) / RampChannels;
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
            for (int k = 0; k < step; ++k) {
                SChainCoefficients& coefficients = to[at + k];
                Store<RampChannels>(coefficients.m_b0 + chain, c.m_b0, k);
                Store<RampChannels>(coefficients.m_b1 + chain, c.m_b1, k);
                Store<RampChannels>(coefficients.m_b2 + chain, c.m_b2, k);
                Store<RampChannels>(coefficients.m_a1 + chain, c.m_a1, k);
                Store<RampChannels>(coefficients.m_a2 + chain, c.m_a2, k);
            }
        }
    }

    static T Load(const double* from) {
        T values;
        __builtin_memcpy(&values, from, sizeof values);
        return values;
    }

    // Both channels of a frame.
    template <int RampChannels>
    static void Store(double* to, const T& values, int frame) {
        using CPair [[gnu::vector_size(Channels * sizeof(double))]] = double;
        const int first = RampChannels * frame;
        const CPair pair = {values[first], values[first + RampChannels - 1]};
        __builtin_memcpy(to, &pair, sizeof pair);
    }
};

} // namespace Lathe::Audio::DSP::Kernel
