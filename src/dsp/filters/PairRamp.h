// What the parameters of a section of two channels are at some frames of a ramp: what the section's
// formula takes.
#pragma once

#include "math/SinCos.h"

namespace Lathe::Audio::DSP::Filters {

// Of each frame the one channel, then the other; the first frame is the one before those that are
// asked for.
struct SPairRamp {
    static constexpr int MaxFrames = 128;
    static constexpr int Room = 2 * (1 + MaxFrames);

    // Radians per sample, and what they turn by.
    double m_Omega[Room];
    double m_Sin[Room];
    double m_Cos[Room];
    // The square root of the linear gain, of a shelf the fourth one.
    double m_Root[Room];
    // Of a peak.
    double m_HalfBandwidth[Room];

    // Of a frame's two channels, of which the first has the index.
    void StoreTurns(int index, const Math::SSinCos (&turns)[2]) LATHE_REALTIME {
        for (int channel = 0; channel < 2; ++channel) {
            m_Sin[index + channel] = turns[channel].m_Sin;
            m_Cos[index + channel] = turns[channel].m_Cos;
        }
    }
};

} // namespace Lathe::Audio::DSP::Filters
