// Proves the gain stage: its factor at every sample of a steady and of a ramped block, its edges,
// and its curves.

#include "dsp/filters/Gain.h"
#include "dsp/FilterProductInfo.h"
#include "dsp/FilterTestSupport.h"

#include <limits>
#include <memory>

namespace Lathe::Audio::DSP::Filters {

namespace {

using namespace Testing;

TEST(Gain, MultipliesEveryChannelAndLayoutAlike) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    const CSignals input = {random.Noise(64), random.Noise(64)};
    for (double dB : {-60.0, -6.0, 0.0, 12.5, 60.0}) {
        const auto factor = static_cast<float>(std::pow(10.0, dB / 20.0));
        CGain mono(1);
        CGain stereo(2);
        CRig monoRig(mono);
        CRig stereoRig(stereo);
        monoRig.Set(0, dB);
        stereoRig.Set(0, dB);
        CBuffers inputs(input, 3);
        CBuffers outputs(2, 64, 9.0f, 2);
        stereoRig.Process(inputs, outputs, 64);
        const CSignals contiguous = monoRig.Run({input[0]});
        EXPECT_EQ(outputs.Read()[0], contiguous[0]);
        for (std::size_t c = 0; c < 2; ++c) {
            for (std::size_t i = 0; i < 64; ++i)
                EXPECT_FLOAT_EQ(outputs.Read()[c][i], factor * input[c][i]);
        }
    }
}

TEST(Gain, RampsInDecibelsAndLandsExactly) {
    const int samples = 100;
    CGain gain(1);
    CRig rig(gain);
    const CSignal ones(2 * samples, 1.0f);
    rig.Move(0, -60.0);
    const CSignal output = rig.Run({ones}, {samples})[0];
    for (int i = 0; i < samples; ++i) {
        const double expected = std::pow(10.0, -60.0 * i / samples / 20.0);
        // A hundred float multiplications.
        EXPECT_NEAR(output[static_cast<std::size_t>(i)], expected, 1e-5 * expected);
    }
    for (std::size_t i = samples; i < output.size(); ++i)
        EXPECT_EQ(output[i], 0.001f);
}

TEST(Gain, FlushesDenormalsAndPassesWhatIsNotFinite) {
    CGain gain(1);
    CRig rig(gain);
    rig.Set(0, -20.0);
    const float tiny = std::numeric_limits<float>::min();
    const CSignal output = rig.Run({{tiny, -tiny, 20.0f * tiny, INFINITY, NAN, -0.0f}})[0];
    EXPECT_EQ(output[0], 0.0f);
    EXPECT_FALSE(std::signbit(output[1]));
    EXPECT_GT(output[2], tiny);
    EXPECT_EQ(output[3], INFINITY);
    EXPECT_TRUE(std::isnan(output[4]));
    EXPECT_EQ(output[5], 0.0f);
    EXPECT_EQ(rig.Run({{1.0f}})[0][0], 0.1f) << "no state";
}

TEST(Gain, IgnoresWhatDoesNotFit) {
    CGain gain(1);
    const double values[] = {-20.0, -20.0};
    gain.OnInputParamsChanged(CParamsValues(1, values));
    gain.Init(44100.0, CFilterInitInfo());
    gain.OnInputParamsChanged(CParamsValues(2, values));
    gain.OnInputParamsChanged(CParamsValues(0));
    CRig rig(gain);
    EXPECT_EQ(rig.Run({{1.0f}})[0][0], 1.0f);

    CGain stereo(2);
    CRig stereoRig(stereo);
    CBuffers one(1, 4, 5.0f);
    CBuffers two(2, 4, 6.0f);
    stereoRig.Process(one, two, 4);
    stereoRig.Process(two, one, 4);
    EXPECT_EQ(one.Read()[0], CSignal(4, 5.0f));
    EXPECT_EQ(two.Read()[0], CSignal(4, 6.0f));
}

TEST(Gain, TellsItsResponse) {
    auto gain = std::make_unique<CGain>(1);
    CRig rig(*gain);
    EXPECT_FALSE(gain->UpdateOutputs()) << "unity from the start";
    rig.Set(0, 20.0);
    EXPECT_TRUE(gain->UpdateOutputs());
    EXPECT_FALSE(gain->UpdateOutputs());
    const std::unique_ptr<CGain> clone(gain->Clone());
    EXPECT_EQ(TakeDirty(gain->GetOutputCurvesDirty()), std::vector{0});
    gain.reset();
    EXPECT_EQ(TakeDirty(clone->GetOutputCurvesDirty()), std::vector{0});
    EXPECT_EQ(clone->GetOutputCurves().GetValue(0).Evaluate(1000.0), 10.0);
    EXPECT_EQ(clone->GetOutputCurves().GetValue(1).Evaluate(1000.0), 0.0);
    EXPECT_STREQ(clone->GetProductInfo().GetName(), "Marrow's Gain");
    EXPECT_STREQ(clone->GetProductInfo().GetVersion(), "2.0");
}

} // namespace

} // namespace Lathe::Audio::DSP::Filters
