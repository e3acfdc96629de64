#include "dsp/filters/SectionRamp.h"

#include "core/SameBits.h"

namespace Lathe::Audio::DSP::Filters {

namespace {

// Written out and not as a loop, which would keep the values in memory.
inline void Step(CSectionRamp& ramp, int rampOrders) {
    if (rampOrders > 1)
        ramp[1].Step(ramp[2]);
    ramp[0].Step(ramp[1]);
}

// Two neighbours at once, because there is a store for each cycle at most.
inline void StoreTwo(SRampFrames& to, int index, const SSectionValues& first,
                     const SSectionValues& second, bool hasBandwidth) {
    using CTwo [[gnu::vector_size(2 * sizeof(double))]] = double;
    const auto store = [index](double* values, double one, double other) {
        const CTwo two = {one, other};
        __builtin_memcpy(values + index, &two, sizeof two);
    };
    store(to.m_Omega, first.m_Omega, second.m_Omega);
    store(to.m_Root, first.m_Root, second.m_Root);
    if (hasBandwidth)
        store(to.m_HalfBandwidth, first.m_HalfBandwidth, second.m_HalfBandwidth);
}

// Where a step leaves the angle and its rate in their places, every step does.
bool DoesAngleRest(const CSectionRamp& ramp, int rampOrders) {
    const double angle = ramp[0].m_Omega;
    const double rate = ramp[1].m_Omega;
    return Core::SameBits(angle + rate, angle) &&
           (rampOrders == 1 || Core::SameBits(rate + ramp[2].m_Omega, rate));
}

// Apart from the steps, which the calls would hold up, and the formulas.
void FillTurns(bool rests, CKeptTurn& turn, SRampFrames& to, int channel, int count) {
    const int end = channel + count * to.m_Channels;
    if (rests) {
        const Math::SSinCos kept = turn.Get(to.m_Omega[channel]);
        for (int i = channel; i < end; i += to.m_Channels) {
            to.m_Sin[i] = kept.m_Sin;
            to.m_Cos[i] = kept.m_Cos;
        }
        return;
    }
    for (int i = channel; i < end; i += to.m_Channels)
        Math::SinCos(to.m_Omega[i], to.m_Sin[i], to.m_Cos[i]);
}

} // namespace

void FillFrames(const SMovingSection& section, SRampFrames& to, int count, int rampOrders) {
    const bool rests = DoesAngleRest(section.m_Ramp, rampOrders);
    CSectionRamp ramp = section.m_Ramp;
    for (int i = 0; i < count; i += 2) {
        Step(ramp, rampOrders);
        const SSectionValues first = ramp[0];
        if (i + 1 < count)
            Step(ramp, rampOrders);
        StoreTwo(to, i, first, ramp[0], section.m_HasBandwidth);
    }
    section.m_Ramp = ramp;
    to.m_Channels = 1;
    FillTurns(rests, section.m_Turn, to, 0, count);
}

void FillFrames(const SMovingSection& left, const SMovingSection& right, SRampFrames& to, int count,
                int rampOrders) {
    if (Core::SameBits(left.m_Ramp, right.m_Ramp)) {
        FillFrames(left, to, count, rampOrders);
        right.m_Ramp = left.m_Ramp;
        return;
    }
    const bool firstRests = DoesAngleRest(left.m_Ramp, rampOrders);
    const bool secondRests = DoesAngleRest(right.m_Ramp, rampOrders);
    CSectionRamp first = left.m_Ramp;
    CSectionRamp second = right.m_Ramp;
    // Side by side, since each step waits for the one before.
    for (int i = 0; i < 2 * count; i += 2) {
        Step(first, rampOrders);
        Step(second, rampOrders);
        StoreTwo(to, i, first[0], second[0], left.m_HasBandwidth);
    }
    left.m_Ramp = first;
    right.m_Ramp = second;
    to.m_Channels = 2;
    FillTurns(firstRests, left.m_Turn, to, 0, count);
    FillTurns(secondRests, right.m_Turn, to, 1, count);
}

} // namespace Lathe::Audio::DSP::Filters
