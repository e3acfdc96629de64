// One sample through a second-order section: the arithmetic that every loop shares.
#pragma once

#include "dsp/filters/BiquadCoefficients.h"
#include "dsp/filters/Denormal.h"

namespace Lathe::Audio::DSP::Filters {

// The sum is taken in this order. An output that is zero or denormal as a float is flushed, in the
// state as well, so that a decay ends.
inline float ProcessSample(const SBiquadCoefficients& c, SBiquadHistory& h, float input)
    LATHE_REALTIME {
    const double x = static_cast<double>(input);
    double y = c.m_b1 * h.m_x1 + c.m_b2 * h.m_x2 + c.m_b0 * x + c.m_a1 * h.m_y1 + c.m_a2 * h.m_y2;
    float output = static_cast<float>(y);
    // A branch, which costs the recursion nothing while the signal is alive; a selection would
    // lengthen it.
    if (IsZeroOrDenormal(output)) [[unlikely]] {
        output = 0.0f;
        y = 0.0;
    }
    h.m_x2 = h.m_x1;
    h.m_x1 = x;
    h.m_y2 = h.m_y1;
    h.m_y1 = y;
    return output;
}

} // namespace Lathe::Audio::DSP::Filters
