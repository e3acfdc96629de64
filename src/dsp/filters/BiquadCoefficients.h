// What a second-order section is at a moment: its coefficients and its past.
#pragma once

#include "core/Realtime.h"

namespace Lathe::Audio::DSP::Filters {

// y = b1 x1 + b2 x2 + b0 x + a1 y1 + a2 y2: the feedback coefficients are the negated ones of the
// textbooks. Of one section, or of several side by side.
template <class T>
struct TBiquadCoefficients {
    T m_b0;
    T m_b1;
    T m_b2;
    T m_a1;
    T m_a2;
};
using SBiquadCoefficients = TBiquadCoefficients<double>;
inline constexpr SBiquadCoefficients IdentityCoefficients = {1.0, 0.0, 0.0, 0.0, 0.0};

// The two previous inputs and outputs of a channel.
struct SBiquadHistory {
    double m_x1 = 0.0;
    double m_x2 = 0.0;
    double m_y1 = 0.0;
    double m_y2 = 0.0;
};

} // namespace Lathe::Audio::DSP::Filters
