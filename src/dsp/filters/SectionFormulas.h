// The coefficients of the sections from what their parameters have become: one number each, or the
// same for several frames and channels side by side.
//
// Always inlined, so that sources for different processors share no code.
#pragma once

#include "dsp/filters/BiquadCoefficients.h"

namespace Lathe::Audio::DSP::Filters {

enum class ESectionFormula { Peak, LowShelf, HighShelf };

// The peaking section of the audio EQ cookbook (R. Bristow-Johnson), with 1/Q taken straight from
// the bandwidth; from the square root of the linear gain.
template <class T>
[[gnu::always_inline]] inline TBiquadCoefficients<T> ComputePeak(const T& sinW, const T& cosW,
                                                                 const T& halfBandwidth, const T& a)
    LATHE_REALTIME {
    const T alpha = sinW * halfBandwidth;
    const T r = 1.0 / (alpha / a + 1.0);
    TBiquadCoefficients<T> c;
    c.m_b0 = (a * alpha + 1.0) * r;
    c.m_b1 = -2.0 * cosW * r;
    c.m_b2 = (1.0 - a * alpha) * r;
    c.m_a1 = -c.m_b1;
    c.m_a2 = (alpha / a - 1.0) * r;
    return c;
}

// The shelves of the same cookbook with a slope of 1, from the angle and the fourth root of the
// linear gain.

template <class T>
[[gnu::always_inline]] inline TBiquadCoefficients<T> ComputeLowShelf(const T& sinW, const T& cosW,
                                                                     const T& sqrtA)
    LATHE_REALTIME {
    const T a = sqrtA * sqrtA;
    const T beta = sinW * sqrtA * 1.4142135623730951;
    const T r = 1.0 / ((a + 1.0) + (a - 1.0) * cosW + beta);
    TBiquadCoefficients<T> c;
    c.m_b0 = a * ((a + 1.0) - (a - 1.0) * cosW + beta) * r;
    c.m_b1 = 2.0 * a * ((a - 1.0) - (a + 1.0) * cosW) * r;
    c.m_b2 = a * ((a + 1.0) - (a - 1.0) * cosW - beta) * r;
    c.m_a1 = 2.0 * ((a - 1.0) + (a + 1.0) * cosW) * r;
    c.m_a2 = -((a + 1.0) + (a - 1.0) * cosW - beta) * r;
    return c;
}

template <class T>
[[gnu::always_inline]] inline TBiquadCoefficients<T> ComputeHighShelf(const T& sinW, const T& cosW,
                                                                      const T& sqrtA)
    LATHE_REALTIME {
    const T a = sqrtA * sqrtA;
    const T beta = sinW * sqrtA * 1.4142135623730951;
    const T r = 1.0 / ((a + 1.0) - (a - 1.0) * cosW + beta);
    TBiquadCoefficients<T> c;
    c.m_b0 = a * ((a + 1.0) + (a - 1.0) * cosW + beta) * r;
    c.m_b1 = -2.0 * a * ((a - 1.0) + (a + 1.0) * cosW) * r;
    c.m_b2 = a * ((a + 1.0) + (a - 1.0) * cosW - beta) * r;
    c.m_a1 = -2.0 * ((a - 1.0) - (a + 1.0) * cosW) * r;
    c.m_a2 = -((a + 1.0) - (a - 1.0) * cosW - beta) * r;
    return c;
}

template <ESectionFormula Formula, class T>
[[gnu::always_inline]] inline TBiquadCoefficients<T>
ComputeSection(const T& sinW, const T& cosW, const T& root, const T& halfBandwidth) LATHE_REALTIME {
    if constexpr (Formula == ESectionFormula::Peak)
        return ComputePeak(sinW, cosW, halfBandwidth, root);
    else if constexpr (Formula == ESectionFormula::LowShelf)
        return ComputeLowShelf(sinW, cosW, root);
    else
        return ComputeHighShelf(sinW, cosW, root);
}

} // namespace Lathe::Audio::DSP::Filters
