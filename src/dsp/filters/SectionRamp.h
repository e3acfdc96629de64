// How the parameters of a section move over a ramp.
#pragma once

#include "core/Realtime.h"
#include "math/FunctionsLibrary.h"
#include "math/KeptResult.h"
#include "math/SinCos.h"

#include <array>

namespace Lathe::Audio::DSP::Filters {

// What the formula of a section takes, and in a ramp by how much that moves.
struct SSectionValues {
    // Moves by a sample: the root by a ratio, the others by adding.
    void Step(const SSectionValues& rates) LATHE_REALTIME {
        m_Omega += rates.m_Omega;
        m_Root *= rates.m_Root;
        m_HalfBandwidth += rates.m_HalfBandwidth;
    }

    // Radians per sample.
    double m_Omega = 0.0;
    // The square root of the linear gain, of a shelf the fourth one.
    double m_Root = 1.0;
    // Octaves, of a peak.
    double m_HalfBandwidth = 0.0;
};

// The current values, followed by their ramp by order.
inline constexpr int MaxRampOrders = 2;
using CSectionRamp = std::array<SSectionValues, 1 + MaxRampOrders>;

using CKeptGain = Math::TKeptResult<double, &Math::FunctionsLibrary::FromdB>;
using CKeptTurn = Math::TKeptResult<Math::SSinCos, &Math::SinCos>;

// The values of the frames behind the current one, of both channels in turns, or of one for both
// that move alike.
struct SRampFrames {
    static constexpr int MaxFrames = 128;

    int m_Channels;
    double m_Omega[2 * MaxFrames];
    double m_Sin[2 * MaxFrames];
    double m_Cos[2 * MaxFrames];
    double m_Root[2 * MaxFrames];
    double m_HalfBandwidth[2 * MaxFrames];
};

// What moves of a section of one channel.
struct SMovingSection {
    CSectionRamp& m_Ramp;
    // Of the angle that the ramp begins with, when that rests.
    CKeptTurn& m_Turn;
    // Without it, that of the frames is left alone.
    bool m_HasBandwidth;
};

// Move on by some frames and fill those; of two channels that move alike to the bit, as one.
void FillFrames(const SMovingSection& section, SRampFrames& to, int count, int rampOrders)
    LATHE_REALTIME;
void FillFrames(const SMovingSection& left, const SMovingSection& right, SRampFrames& to, int count,
                int rampOrders) LATHE_REALTIME;

} // namespace Lathe::Audio::DSP::Filters
