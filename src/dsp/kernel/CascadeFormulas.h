// The loop over the frames of a ramp that gives a section its coefficients, which every version
// compiles with lanes of its own.
#pragma once

#include "dsp/filters/PairRamp.h"
#include "dsp/filters/SectionFormulas.h"
#include "dsp/kernel/CascadeLanes.h"

namespace Lathe::Audio::DSP::Kernel {

// L stands in an unnamed namespace. Its member CDoubles is a vector of doubles: both channels of
// one frame or of several.
template <class L>
class TCascadeFormulas {
public:
    static void Compute(const SSectionRamp& section) {
        using Filters::ESectionFormula;
        switch (section.m_Formula) {
        case ESectionFormula::Peak:
            return ForFrames(section, [](const Filters::SPairRamp& r, int i) {
                return Filters::ComputePeak(Load(r.m_Sin + i), Load(r.m_Cos + i),
                                            Load(r.m_HalfBandwidth + i), Load(r.m_Root + i));
            });
        case ESectionFormula::LowShelf:
            return ForFrames(section, [](const Filters::SPairRamp& r, int i) {
                return Filters::ComputeLowShelf(Load(r.m_Sin + i), Load(r.m_Cos + i),
                                                Load(r.m_Root + i));
            });
        case ESectionFormula::HighShelf:
            return ForFrames(section, [](const Filters::SPairRamp& r, int i) {
                return Filters::ComputeHighShelf(Load(r.m_Sin + i), Load(r.m_Cos + i),
                                                 Load(r.m_Root + i));
            });
        }
    }

private:
    using T = typename L::CDoubles;
    static constexpr int s_Frames = static_cast<int>(sizeof(T) / (Channels * sizeof(double)));
    static_assert(GroupFrames % s_Frames == 0);

    static T Load(const double* from) {
        T values;
        __builtin_memcpy(&values, from, sizeof values);
        return values;
    }

    template <class TFormula>
    static void ForFrames(const SSectionRamp& section, TFormula formula) {
        // Copies, which no store to the coefficients can change.
        const Filters::SPairRamp& ramp = *section.m_Ramp;
        SChainCoefficients* const to = section.m_To;
        const int frames = section.m_Frames;
        const int chain = section.m_Chain;
        for (int at = 1; at <= frames; at += s_Frames) {
            const Filters::TBiquadCoefficients<T> c = formula(ramp, Channels * at);
            for (int frame = 0; frame < s_Frames; ++frame) {
                SChainCoefficients& coefficients = to[at + frame];
                Store(coefficients.m_b0 + chain, c.m_b0, frame);
                Store(coefficients.m_b1 + chain, c.m_b1, frame);
                Store(coefficients.m_b2 + chain, c.m_b2, frame);
                Store(coefficients.m_a1 + chain, c.m_a1, frame);
                Store(coefficients.m_a2 + chain, c.m_a2, frame);
            }
        }
    }

    static void Store(double* to, const T& values, int frame) {
        const char* const from =
            reinterpret_cast<const char*>(&values) + frame * (Channels * sizeof(double));
        __builtin_memcpy(to, from, Channels * sizeof(double));
    }
};

} // namespace Lathe::Audio::DSP::Kernel
