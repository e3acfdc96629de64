// Proves how the adapters make one filter of two: whose inputs go where, how they join tails,
// clocks and results, and the matrix between left/right and mid/side.

#include "dsp/FilterTestSupport.h"
#include "dsp/TestFilter.h"
#include "dsp/adapters/FullStereoFromMonoFilter.h"
#include "dsp/adapters/MSLRFromStereoFilter.h"

namespace Lathe::Audio::DSP {

using namespace Testing;

// Every layout of the streams has its turn among the runs.
TEST(MidSideMatrix, EncodesByItsFormulaAndDecodesWhatItEncoded) {
    CRandom random;
    for (int run = 0; run < 60; ++run) {
        const CSignals sides = random.Noise(2, 200);
        const int orders = run % 3;
        double now = random.Between(-1.0, 0.0);
        double rate = random.Between(-now - 1.0, -now) / 200;
        const CMatrixRamp start = {now, rate, 1e-6};
        CSignals channels = sides, expected = sides;
        for (std::size_t i = 0; i < 200; ++i) {
            const double l = sides[0][i];
            const double r = sides[1][i];
            expected[0][i] = static_cast<float>(((1.0 + now) * r + (1.0 - now) * l) / 2.0);
            expected[1][i] = static_cast<float>(((1.0 - now) * r - (1.0 + now) * l) / 2.0);
            rate += orders > 1 ? start[2] : 0.0; // The highest order moves first.
            now += orders > 0 ? rate : 0.0;
        }
        const CBuffers inputs(sides, 1 + run / 3 % 2);
        CMatrixRamp ramp = start;
        EncodeMidSide(inputs.GetElement(0), inputs.GetElement(1), channels[0].data(),
                      channels[1].data(), 200, ramp, orders);
        CheckClose(channels, expected, 2e-7);
        CBuffers back(channels, 1 + run / 6 % 2);
        ramp = start;
        DecodeMidSide(back.GetElement(0), back.GetElement(1), 200, ramp, orders);
        CheckClose(back.Read(), sides, 5e-7); // A few roundings of floats.
    }
}

class CStereoProbe : public TFullStereoFromMonoFilter<CTestFilter> {
public:
    using TFullStereoFromMonoFilter::m_Left;
    using TFullStereoFromMonoFilter::m_Right;
};

TEST(StereoAdapters, PutTheModeFirstOrLast) {
    for (bool last : {false, true}) {
        TMSLRFromStereoFilter<CStereoProbe> filter("M", "S", last);
        const IConstParamInfos& infos = filter.GetInputParamsInfo();
        const int channel1 = last ? 0 : 1;
        const int mode = last ? 6 : 0;
        EXPECT_STREQ(infos.GetElement(mode).GetName(), "Stereo Mode");
        EXPECT_STREQ(infos.GetElement(channel1).GetName(), "A M(R) (L)") << "the first (L) alone";
        EXPECT_STREQ(infos.GetElement(channel1 + 3).GetName(), "A M(R) (R)");
        EXPECT_STREQ(infos.GetElement(channel1 + 5).GetName(), "B S");
        CRig rig(filter);
        // Channel 2 is the side: what is added to it parts left from right.
        rig.Set({1.0, 0.0, 0.0, 3.0}, channel1);
        EXPECT_EQ(rig.Run({{8.0f}, {4.0f}}), (CSignals{{9.0f}, {7.0f}}));
        rig.Set({1.0}, mode);
        EXPECT_EQ(rig.Run({{8.0f}, {4.0f}}), (CSignals{{6.0f}, {8.0f}}));
    }
}

TEST(StereoAdapters, JoinTailsLatenciesClocksAndResults) {
    for (int mask = 0; mask < 4; ++mask) {
        CStereoProbe stereo;
        CRig rig(stereo);
        stereo.m_Left.SetTail(mask & 1 ? 100 : 0);
        stereo.m_Right.SetTail(mask & 2 ? -1 : 50);
        EXPECT_EQ(stereo.GetTailLength(), mask & 2 ? -1 : mask ? 100 : 50);
        EXPECT_EQ(stereo.GetLatency(), mask & 1 ? 100 : mask ? 0 : 50);
        stereo.m_Right.SetTail(mask & 2 ? 100 : 0);
        rig.Set({4.0, 0.0, 0.0, 3.0});
        rig.Move({5.0}, 3);
        CBuffers outputs(2, 1, 9.0f);
        EXPECT_EQ(rig.Process(nullptr, outputs, 1), mask != 0) << "true when either has signal";
        EXPECT_EQ(stereo.m_Left.m_Rate, 0.0);
        EXPECT_EQ(stereo.m_Right.m_Rate, mask & 2 ? 2.0 : 0.0);
        EXPECT_EQ(outputs.Read(), (CSignals{{mask & 1 ? 4.0f : 0.0f}, {mask & 2 ? 5.0f : 0.0f}}));
        if (mask & 1)
            stereo.m_Left.m_Clock.emplace(10.0).SetSampleRate(1000.0);
        if (mask & 2)
            stereo.m_Right.m_Clock.emplace(25.0).SetSampleRate(1000.0);
        IOutputDataSync* clock = stereo.GetOutputDataSync();
        ASSERT_EQ(clock != nullptr, mask != 0);
        if (!clock)
            continue;
        EXPECT_EQ(clock->GetRefreshRate(), mask & 2 ? 25.0 : 10.0);
        clock->ResetCounter();
        EXPECT_FALSE(clock->IsTimeToSync());
        (mask & 2 ? stereo.m_Right : stereo.m_Left).m_Clock->AddSamples(100);
        EXPECT_TRUE(clock->IsTimeToSync()) << "either clock will do";
        clock->SetRefreshRate(5.0);
        EXPECT_FALSE(clock->IsTimeToSync());
    }
}

} // namespace Lathe::Audio::DSP
