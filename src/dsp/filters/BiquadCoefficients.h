// What a second-order section is at a moment: its coefficients and its past.
#pragma once

#include "core/Realtime.h"

namespace Lathe::Audio::DSP::Filters {

// y = b1 x1 + b2 x2 + b0 x + a1 y1 + a2 y2: the feedback coefficients are the negated ones of the
// textbooks.
struct SBiquadCoefficients {
    double m_b0 = 1.0;
    double m_b1 = 0.0;
    double m_b2 = 0.0;
    double m_a1 = 0.0;
    double m_a2 = 0.0;
};

// The two previous inputs and outputs of a channel.
struct SBiquadHistory {
    double m_x1 = 0.0;
    double m_x2 = 0.0;
    double m_y1 = 0.0;
    double m_y2 = 0.0;
};

// Where the coefficients of a ramp's frames go, in whatever layout its reader has.
struct SCoefficientsRoom {
    void Write(int frame, const SBiquadCoefficients& c) const LATHE_REALTIME {
        double* to = m_First + frame * m_FrameStride;
        for (const double value : {c.m_b0, c.m_b1, c.m_b2, c.m_a1, c.m_a2}) {
            to[0] = value;
            if (m_IsTwin)
                to[1] = value;
            to += m_CoefficientStride;
        }
    }

    double* m_First;
    // In doubles.
    int m_FrameStride;
    int m_CoefficientStride;
    // Whether each is written to the double behind it as well.
    bool m_IsTwin;
};

} // namespace Lathe::Audio::DSP::Filters
