// Proves that the frames of a ramp are those of a plain loop to the bit, whatever of it rests, and
// that two channels that move alike are computed as one.

#include "dsp/filters/SectionRamp.h"

#include <gtest/gtest.h>

#include <cmath>

namespace Lathe::Audio::DSP::Filters {

// Angle, root and half bandwidth, and their rates by order.
static const CSectionRamp s_Ramps[] = {
    {{{0.3, 1.2, 0.5}, {1e-3, 1.01, 1e-4}, {1e-5, 1.001, 1e-6}}},
    {{{0.3, 1.2, 0.5}, {0.0, 1.01, 1e-4}, {0.0, 1.001, 1e-6}}},
    {{{0.3, 1.2, 0.5}, {0.0, 1.0, 0.0}, {1e-3, 1.0, 0.0}}},
    {{{0.3, 1.2, 0.5}, {1e-3, 1.0, 0.0}, {-1e-3, 1.0, 0.0}}}, // Rests for one step.
    {{{0.3, 1.2, 0.5}, {1e-20, 1.0, 0.0}, {2e-3, 1.0, 0.0}}},
};

// The next frames of a channel; moves its ramp on.
static void CheckFrames(const SRampFrames& frames, int channel, int count, CSectionRamp& ramp,
                        int orders) {
    for (int i = 0; i < count; ++i) {
        for (auto order = static_cast<std::size_t>(orders); order > 0; --order) {
            ramp[order - 1].m_Omega += ramp[order].m_Omega;
            ramp[order - 1].m_Root *= ramp[order].m_Root;
            ramp[order - 1].m_HalfBandwidth += ramp[order].m_HalfBandwidth;
        }
        const int at = frames.m_Channels == 1 ? i : 2 * i + channel;
        EXPECT_EQ(frames.m_Sin[at], std::sin(ramp[0].m_Omega)) << i;
        EXPECT_EQ(frames.m_Cos[at], std::cos(ramp[0].m_Omega)) << i;
        EXPECT_EQ(frames.m_Root[at], ramp[0].m_Root) << i;
        EXPECT_EQ(frames.m_HalfBandwidth[at], ramp[0].m_HalfBandwidth) << i;
    }
}

TEST(SectionRamp, FillsTheFramesOfAPlainLoop) {
    for (int orders = 1; orders <= MaxRampOrders; ++orders) {
        for (const CSectionRamp& first : s_Ramps) {
            for (const CSectionRamp& second : s_Ramps) {
                SCOPED_TRACE(testing::Message() << orders << " orders, ramps " << &first - s_Ramps
                                                << " and " << &second - s_Ramps);
                CSectionRamp left = first, expectedLeft = first;
                CSectionRamp right = second, expectedRight = second;
                CKeptTurn leftTurn, rightTurn;
                SRampFrames frames;
                for (const int count : {5, SRampFrames::MaxFrames, 1}) {
                    FillFrames({left, leftTurn, true}, {right, rightTurn, true}, frames, count,
                               orders);
                    EXPECT_EQ(frames.m_Channels, &first == &second ? 1 : 2);
                    CheckFrames(frames, 0, count, expectedLeft, orders);
                    CheckFrames(frames, 1, count, expectedRight, orders);
                }
            }
        }
    }
}

} // namespace Lathe::Audio::DSP::Filters
