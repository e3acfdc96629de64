#include "dsp/filters/SectionRamp.h"

#include "core/SameBits.h"

namespace Lathe::Audio::DSP::Filters {

namespace {

inline void Step(CSectionRamp& ramp, int rampOrders, SRampFrames& to, int index) {
    // Written out and not as a loop, which would keep the values in memory.
    if (rampOrders > 1)
        ramp[1].Step(ramp[2]);
    ramp[0].Step(ramp[1]);
    to.m_Omega[index] = ramp[0].m_Omega;
    to.m_Root[index] = ramp[0].m_Root;
    to.m_HalfBandwidth[index] = ramp[0].m_HalfBandwidth;
}

// Apart from the steps, which the calls would hold up, and the formulas.
void FillTurns(CKeptTurn& turn, double start, SRampFrames& to, int channel, int count,
               int rampOrders) {
    const int end = channel + count * to.m_Channels;
    // Where one order of ramp leaves the angle in its place once, it leaves it there.
    if (rampOrders == 1 && Core::SameBits(to.m_Omega[channel], start)) {
        const Math::SSinCos kept = turn.Get(start);
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
    const double start = section.m_Ramp[0].m_Omega;
    CSectionRamp ramp = section.m_Ramp;
    for (int i = 0; i < count; ++i)
        Step(ramp, rampOrders, to, i);
    section.m_Ramp = ramp;
    to.m_Channels = 1;
    FillTurns(section.m_Turn, start, to, 0, count, rampOrders);
}

void FillFrames(const SMovingSection& left, const SMovingSection& right, SRampFrames& to, int count,
                int rampOrders) {
    if (Core::SameBits(left.m_Ramp, right.m_Ramp)) {
        FillFrames(left, to, count, rampOrders);
        right.m_Ramp = left.m_Ramp;
        return;
    }
    const double starts[] = {left.m_Ramp[0].m_Omega, right.m_Ramp[0].m_Omega};
    CSectionRamp first = left.m_Ramp;
    CSectionRamp second = right.m_Ramp;
    // Side by side, since each step waits for the one before.
    for (int i = 0; i < 2 * count; i += 2) {
        Step(first, rampOrders, to, i);
        Step(second, rampOrders, to, i + 1);
    }
    left.m_Ramp = first;
    right.m_Ramp = second;
    to.m_Channels = 2;
    FillTurns(left.m_Turn, starts[0], to, 0, count, rampOrders);
    FillTurns(right.m_Turn, starts[1], to, 1, count, rampOrders);
}

} // namespace Lathe::Audio::DSP::Filters
