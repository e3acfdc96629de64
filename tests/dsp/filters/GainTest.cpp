// Proves that the gain stage multiplies each sample of each channel, whatever its memory looks
// like, that its ramps follow a line in dB and land exactly, and that its paths agree bit for bit.

#include "dsp/filters/Gain.h"

#include "dsp/properties/FilterPropertiesVariations.h"
#include "dsp/streams/EmptyStream.h"
#include "dsp/streams/TestStreams.h"
#include "support/AllocationCounter.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <vector>

namespace Lathe::Audio::DSP::Filters {

namespace {

constexpr int s_Samples = 64;

float ToLinear(double dB) {
    return static_cast<float>(std::pow(10.0, 0.05 * dB));
}

class Gain : public testing::Test {
protected:
    // Signal with the cases that are special to a multiplication.
    Gain() : m_Signal(2 * s_Samples) {
        std::mt19937 random(20240607);
        std::uniform_real_distribution<float> uniform(-1.0f, 1.0f);
        for (float& sample : m_Signal)
            sample = uniform(random);
        constexpr float tiny = std::numeric_limits<float>::min();
        const float special[] = {0.0f, -0.0f, tiny, -tiny, 1.5f * tiny, tiny / 4.0f, 1e30f, -1e38f};
        std::copy(std::begin(special), std::end(special), m_Signal.begin() + 5);
    }

    static CGain MakeGain(int channels, double dB) {
        CGain gain(channels);
        gain.Init(44100.0, CFilterInitInfo());
        SetGain(gain, dB);
        return gain;
    }
    static void SetGain(CGain& gain, double dB) {
        CFilterProperties values;
        values.SetDefaults(gain);
        values.GetParams().SetValue(0, dB);
        gain.SetInputValues(values);
    }
    static void Run(CGain& gain, const IConstAudioStreams& inputs, IAudioStreams& outputs,
                    int samples, const IConstFilterPropertiesVariations* variations = nullptr) {
        CFilterProcessData data;
        data.m_pInputs = &inputs;
        data.m_pOutputs = &outputs;
        data.m_SamplesCount = samples;
        data.m_pVariations = variations;
        gain.Process(data);
    }
    // A ramp between two gains over a block, as its owner makes one.
    static CFilterPropertiesVariations MakeRamp(const CGain& gain, double start, double end,
                                                int samples) {
        CFilterPropertiesVariations ramp;
        ramp.Setup(gain, 1);
        ramp.GetStart().SetDefaults(gain);
        ramp.GetStart().GetParams().SetValue(0, start);
        ramp.GetEnd().SetDefaults(gain);
        ramp.GetEnd().GetParams().SetValue(0, end);
        ramp.ComputeRates(samples);
        return ramp;
    }
    float GetSignal(int channel, int sample) const {
        return m_Signal[static_cast<std::size_t>(channel * s_Samples + sample)];
    }
    CTestStreams MakeSignal(int channels, int stride) const {
        CTestStreams streams(channels, stride, s_Samples);
        streams.Fill([this](int c, int i) { return GetSignal(c, i); });
        return streams;
    }
    static CTestStreams MakeOnes(int stride, int samples) {
        CTestStreams streams(1, stride, samples);
        streams.Fill([](int, int) { return 1.0f; });
        return streams;
    }

    std::vector<float> m_Signal;
};

// Bits are compared: zeros have a sign, and no path may differ from another.
TEST_F(Gain, MultipliesAsANaiveLoopDoes) {
    for (const double dB : {0.0, -6.0, 13.7, -60.0, 60.0}) {
        for (const int channels : {1, 2}) {
            for (const int inStride : {1, 2}) {
                for (const int outStride : {1, 3}) {
                    SCOPED_TRACE(testing::Message() << dB << " dB, " << channels << " channels, "
                                                    << inStride << " to " << outStride);
                    CGain gain = MakeGain(channels, dB);
                    CTestStreams input = MakeSignal(channels, inStride);
                    CTestStreams output(channels, outStride, s_Samples);
                    Run(gain, input, output, s_Samples);
                    // The same in place.
                    Run(gain, input, input, s_Samples);
                    EXPECT_TRUE(output.AreGapsUntouched());
                    for (int c = 0; c < channels; ++c) {
                        for (int i = 0; i < s_Samples; ++i) {
                            float expected = ToLinear(dB) * GetSignal(c, i);
                            if (std::abs(expected) < std::numeric_limits<float>::min())
                                expected = 0.0f;
                            const auto bits = std::bit_cast<unsigned>(expected);
                            ASSERT_EQ(std::bit_cast<unsigned>(output.Get(c, i)), bits) << i;
                            ASSERT_EQ(std::bit_cast<unsigned>(input.Get(c, i)), bits) << i;
                        }
                    }
                }
            }
        }
    }
}

TEST_F(Gain, ReadsSilenceAndSwallowsOutput) {
    CGain gain = MakeGain(2, 6.0);
    CTestStreams block = MakeSignal(2, 1);
    CTestStreams cells(2, 0, s_Samples);
    Run(gain, block, cells, s_Samples);
    EXPECT_EQ(cells.Get(1, 0), ToLinear(6.0) * GetSignal(1, s_Samples - 1));
    Run(gain, CEmptyStreams(s_Samples, 2), block, s_Samples);
    EXPECT_EQ(block.Get(1, s_Samples - 1), 0.0f);
    // Streams without data do the same.
    CAudioStream noData[2];
    CAudioStreams nowhere(noData, 2, false);
    block = MakeSignal(2, 1);
    Run(gain, block, nowhere, s_Samples);
    EXPECT_EQ(block.Get(0, 0), GetSignal(0, 0));
    Run(gain, nowhere, block, s_Samples);
    EXPECT_EQ(block.Get(0, 0), 0.0f);
}

TEST_F(Gain, DoesNothingWithFewerChannels) {
    CGain gain = MakeGain(2, 6.0);
    CTestStreams one = MakeSignal(1, 1);
    CTestStreams two = MakeSignal(2, 1);
    Run(gain, one, two, s_Samples);
    EXPECT_EQ(two.Get(0, 0), GetSignal(0, 0));
    Run(gain, two, one, s_Samples);
    EXPECT_EQ(one.Get(0, 0), GetSignal(0, 0));
    gain.Process(CFilterProcessData());
}

TEST_F(Gain, RampsAlongALineInDbAndLandsExactly) {
    const struct {
        double m_Start, m_End;
        int m_Samples;
    } cases[] = {{0.0, -60.0, 64}, {-60.0, 60.0, 1000}, {6.0, 6.0, 10},
                 {3.0, 12.0, 1},   {0.0, 10.0, 3},      {0.0, 60.0, 0}};
    for (const auto& row : cases) {
        for (const int stride : {1, 2}) {
            SCOPED_TRACE(testing::Message() << row.m_Start << " to " << row.m_End);
            CGain gain = MakeGain(1, 20.0);
            CTestStreams block = MakeOnes(stride, row.m_Samples + 1);
            const auto ramp = MakeRamp(gain, row.m_Start, row.m_End, row.m_Samples);
            Run(gain, block, block, row.m_Samples, &ramp);
            for (int i = 0; i < row.m_Samples; ++i) {
                const double dB = row.m_Start + (row.m_End - row.m_Start) * i / row.m_Samples;
                // Each step rounds once, and carries the rounding of the ratio.
                const float tolerance = ToLinear(dB) * static_cast<float>(i + 1) * 1.2e-7f;
                EXPECT_NEAR(block.Get(0, i), ToLinear(dB), tolerance) << i;
            }
            // The next block has the end value itself.
            CAudioStream rest(&block.Get(0, row.m_Samples), 0, 1, 1, false);
            CAudioStreamToStreams next(&rest, false);
            Run(gain, next, next, 1);
            EXPECT_EQ(block.Get(0, row.m_Samples), ToLinear(row.m_End));
        }
    }
}

TEST_F(Gain, HigherOrdersBendTheRamp) {
    CGain gain = MakeGain(1, 0.0);
    CFilterPropertiesVariations ramp = MakeRamp(gain, 1.0, 2.0, 10);
    ramp.GetRates(Params).SetCount(2);
    ramp.GetRates(Params)[1].SetCount(1);
    ramp.GetRates(Params)[0].SetValue(0, 0.5);
    ramp.GetRates(Params)[1].SetValue(0, -0.25);
    CTestStreams block = MakeOnes(1, 10);
    Run(gain, block, block, 10, &ramp);
    for (int i = 0; i < 10; ++i) {
        // The slope takes its step before the gain does.
        const double dB = 1.0 + 0.5 * i - 0.25 * i * (i + 1) / 2.0;
        EXPECT_NEAR(block.Get(0, i), ToLinear(dB), 1e-5f) << i;
    }
}

TEST_F(Gain, TakesOneValueAfterInitOnly) {
    CGain gain(1);
    EXPECT_FALSE(gain.UpdateOutputs());
    SetGain(gain, 20.0);
    EXPECT_FALSE(gain.UpdateOutputs()) << "no sample rate yet";
    gain.Init(44100.0, CFilterInitInfo());
    const double two[] = {20.0, 20.0};
    gain.OnInputParamsChanged(CParamsValues(2, two));
    gain.OnInputParamsChanged(CParamsValues(0));
    EXPECT_FALSE(gain.UpdateOutputs());
    gain.OnInputParamsChanged(CParamsValues(1, two));
    EXPECT_TRUE(gain.UpdateOutputs());
    EXPECT_FALSE(gain.UpdateOutputs());
    EXPECT_TRUE(gain.GetOutputCurvesDirty().GetElement(0).IsDirty());
    EXPECT_FALSE(gain.GetOutputCurvesDirty().GetElement(1).IsDirty());
    EXPECT_EQ(gain.GetOutputCurves().GetValue(0).Evaluate(1000.0), ToLinear(20.0));
    EXPECT_EQ(gain.GetOutputCurves().GetValue(1).Evaluate(1000.0), 0.0);
}

TEST_F(Gain, ACloneGoesItsOwnWay) {
    CGain gain = MakeGain(1, -6.0);
    gain.UpdateOutputs();
    const std::unique_ptr<CGain> clone(gain.Clone());
    SetGain(gain, 6.0);
    gain.UpdateOutputs();
    EXPECT_EQ(clone->GetOutputCurves().GetValue(0).Evaluate(0.0), ToLinear(-6.0));
    CTestStreams block = MakeOnes(1, 1);
    Run(*clone, block, block, 1);
    EXPECT_EQ(block.Get(0, 0), ToLinear(-6.0));
    CFilterInitInfo info;
    info.m_ResetToDefaults = true;
    clone->Init(48000.0, info);
    EXPECT_TRUE(clone->UpdateOutputs());
    EXPECT_EQ(clone->GetOutputCurves().GetValue(0).Evaluate(0.0), 1.0);
}

TEST_F(Gain, BlocksAllocateNothing) {
    CGain gain = MakeGain(2, 0.0);
    CTestStreams block = MakeSignal(2, 1);
    const auto ramp = MakeRamp(gain, 0.0, 6.0, s_Samples);
    const CAllocationScope scope;
    Run(gain, block, block, s_Samples, &ramp);
    Run(gain, block, block, s_Samples);
    gain.UpdateOutputs();
    gain.Reset();
    EXPECT_EQ(scope.GetCount(), 0);
    EXPECT_EQ(scope.GetFreedCount(), 0);
}

} // namespace

} // namespace Lathe::Audio::DSP::Filters
