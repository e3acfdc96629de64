// The coefficients of a section whose parameters move, for the sources of the sections.
#pragma once

#include "dsp/filters/BiquadFilter.h"
#include "math/SinCos.h"

#include <bit>
#include <cstdint>

namespace Lathe::Audio::DSP::Filters {

// By their bits: what a formula makes of the same is the same, whatever it is.
inline bool IsSame(double a, double b) LATHE_REALTIME {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

template <class TRamp, class TComputeCoefficients>
void CBiquadFilter::FillRamp(TRamp& ramp, const SCoefficientsRoom& room, int start, int count,
                             int rampOrders, TComputeCoefficients computeCoefficients)
    LATHE_REALTIME {
    SBiquadCoefficients coefficients = m_Coefficients;
    auto [current, first, second] = ramp;
    // No angle: the first one is always turned.
    bool isTurned = false;
    double angle = 0.0;
    Math::SSinCos turn = {0.0, 1.0};
    for (int i = 0; i < count; ++i) {
        room.Write(i, coefficients);
        // Written out and not as a loop over the orders, which would keep the values in memory.
        if (rampOrders > 1)
            first.Step(second);
        current.Step(first);
        if ((m_RecomputeMask & static_cast<unsigned>(start + i)) != 0)
            continue;
        if (!isTurned || !IsSame(current.m_Omega, angle)) {
            isTurned = true;
            angle = current.m_Omega;
            turn = Math::SinCos(angle);
        }
        coefficients = computeCoefficients(current, turn);
    }
    ramp = {current, first, second};
    SetCoefficients(coefficients);
}

} // namespace Lathe::Audio::DSP::Filters
