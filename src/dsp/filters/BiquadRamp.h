// The loop of a section whose parameters move, for the sources of the sections.
#pragma once

#include "dsp/filters/BiquadFilter.h"

#include <algorithm>
#include <array>

namespace Lathe::Audio::DSP::Filters {

// Coefficients are computed for a chunk of frames ahead, so that the calls of sine and cosine don't
// break up the recursion.
template <class TRamp, class TComputeCoefficients>
void CBiquadFilter::ProcessRamped(TRamp& ramp, int samples, int rampOrders,
                                  TComputeCoefficients computeCoefficients) LATHE_REALTIME {
    std::array<SBiquadCoefficients, 16> chunk;
    SBiquadCoefficients coefficients = m_Coefficients;
    auto [current, first, second] = ramp;
    for (int start = 0; start < samples; start += static_cast<int>(chunk.size())) {
        const int count = std::min(static_cast<int>(chunk.size()), samples - start);
        for (int i = 0; i < count; ++i) {
            chunk[static_cast<std::size_t>(i)] = coefficients;
            // Written out and not as a loop over the orders, which would keep the values in memory.
            if (rampOrders > 1)
                first.Step(second);
            current.Step(first);
            if ((m_RecomputeMask & static_cast<unsigned>(start + i)) == 0)
                coefficients = computeCoefficients(current);
        }
        ProcessMovingFrames(chunk.data(), count);
    }
    ramp = {current, first, second};
    SetCoefficients(coefficients);
}

} // namespace Lathe::Audio::DSP::Filters
