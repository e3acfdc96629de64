// Proves that the gain stage multiplies each sample of each channel, whatever its memory looks
// like, that its ramps follow a line in dB and land exactly, and that its paths agree bit for bit.

#include "dsp/filters/Gain.h"

#include "dsp/properties/FilterPropertiesVariations.h"
#include "dsp/streams/EmptyStream.h"
#include "support/AllocationCounter.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <random>
#include <vector>

namespace Lathe::Audio::DSP::Filters {

namespace {

constexpr int s_Samples = 64;

float ToLinear(double dB) {
    return static_cast<float>(std::pow(10.0, 0.05 * dB));
}

// Up to two channels of a block, in one piece of memory.
class CBlock {
public:
    CBlock(int channels, int stride, int samples = s_Samples)
        : m_Stride(stride), m_Memory(static_cast<std::size_t>(2 * samples * std::max(stride, 1))) {
        for (int c = 0; c < 2; ++c)
            m_Channels[c] =
                CAudioStream(GetFirst(c), 0, samples * std::max(stride, 1), stride, false);
        m_Streams.emplace(m_Channels, channels, false);
    }
    float& Get(int channel, int sample) { return GetFirst(channel)[sample * m_Stride]; }
    CAudioStreams& GetStreams() { return *m_Streams; }
    // From a part of the block on, as its own block.
    void Move(int sample, int samples) {
        for (int c = 0; c < 2; ++c)
            m_Channels[c] =
                CAudioStream(GetFirst(c), sample * m_Stride, samples * m_Stride, m_Stride, false);
    }

private:
    float* GetFirst(int channel) {
        return m_Memory.data() + m_Memory.size() / 2 * static_cast<std::size_t>(channel);
    }

    int m_Stride;
    std::vector<float> m_Memory;
    CAudioStream m_Channels[2];
    std::optional<CAudioStreams> m_Streams;
};

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
    void Fill(CBlock& block) const {
        for (int c = 0; c < 2; ++c) {
            for (int i = 0; i < s_Samples; ++i)
                block.Get(c, i) = GetSignal(c, i);
        }
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
                    CBlock input(channels, inStride);
                    CBlock output(channels, outStride);
                    Fill(input);
                    Run(gain, input.GetStreams(), output.GetStreams(), s_Samples);
                    // The same in place.
                    Run(gain, input.GetStreams(), input.GetStreams(), s_Samples);
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
    CBlock block(2, 1);
    Fill(block);
    Run(gain, CEmptyStreams(s_Samples, 2), block.GetStreams(), s_Samples);
    EXPECT_EQ(block.Get(1, s_Samples - 1), 0.0f);
    Fill(block);
    CBlock cells(2, 0);
    Run(gain, block.GetStreams(), cells.GetStreams(), s_Samples);
    EXPECT_EQ(cells.Get(1, 0), ToLinear(6.0) * GetSignal(1, s_Samples - 1));
    // Streams without data do the same.
    CAudioStream nothing[2];
    CAudioStreams nowhere(nothing, 2, false);
    Run(gain, block.GetStreams(), nowhere, s_Samples);
    Run(gain, nowhere, block.GetStreams(), s_Samples);
    EXPECT_EQ(block.Get(0, 0), 0.0f);
}

TEST_F(Gain, LeavesTheOutputsWithoutItsChannels) {
    CGain gain = MakeGain(2, 6.0);
    CBlock one(1, 1);
    CBlock two(2, 1);
    Fill(one);
    Fill(two);
    Run(gain, one.GetStreams(), two.GetStreams(), s_Samples);
    EXPECT_EQ(two.Get(0, 0), GetSignal(0, 0));
    Run(gain, two.GetStreams(), one.GetStreams(), s_Samples);
    EXPECT_EQ(one.Get(0, 0), GetSignal(0, 0));
    CFilterProcessData data;
    gain.Process(data);
}

// What a filter makes of a constant 1 is its gain.
std::vector<float> GetGains(CBlock& block, int samples) {
    std::vector<float> gains;
    for (int i = 0; i < samples; ++i)
        gains.push_back(block.Get(0, i));
    return gains;
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
            CBlock input(1, stride, row.m_Samples + 1);
            for (int i = 0; i <= row.m_Samples; ++i)
                input.Get(0, i) = 1.0f;
            CBlock output(1, stride, row.m_Samples + 1);
            const auto ramp = MakeRamp(gain, row.m_Start, row.m_End, row.m_Samples);
            Run(gain, input.GetStreams(), output.GetStreams(), row.m_Samples, &ramp);
            for (int i = 0; i < row.m_Samples; ++i) {
                const double dB = row.m_Start + (row.m_End - row.m_Start) * i / row.m_Samples;
                // Each step rounds once, and carries the rounding of the ratio.
                const float tolerance = ToLinear(dB) * static_cast<float>(i + 1) * 1.2e-7f;
                EXPECT_NEAR(output.Get(0, i), ToLinear(dB), tolerance) << i;
            }
            input.Move(row.m_Samples, 1);
            output.Move(row.m_Samples, 1);
            Run(gain, input.GetStreams(), output.GetStreams(), 1);
            EXPECT_EQ(output.Get(0, row.m_Samples), ToLinear(row.m_End));
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
    CBlock block(1, 1, 10);
    for (int i = 0; i < 10; ++i)
        block.Get(0, i) = 1.0f;
    Run(gain, block.GetStreams(), block.GetStreams(), 10, &ramp);
    const std::vector<float> gains = GetGains(block, 10);
    for (int i = 0; i < 10; ++i) {
        // The slope takes its step before the gain does.
        const double dB = 1.0 + 0.5 * i - 0.25 * i * (i + 1) / 2.0;
        EXPECT_NEAR(gains[static_cast<std::size_t>(i)], ToLinear(dB), 1e-5f) << i;
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
    CBlock block(1, 1);
    block.Get(0, 0) = 1.0f;
    Run(*clone, block.GetStreams(), block.GetStreams(), 1);
    EXPECT_EQ(block.Get(0, 0), ToLinear(-6.0));
    CFilterInitInfo info;
    info.m_ResetToDefaults = true;
    clone->Init(48000.0, info);
    EXPECT_TRUE(clone->UpdateOutputs());
    EXPECT_EQ(clone->GetOutputCurves().GetValue(0).Evaluate(0.0), 1.0);
}

TEST_F(Gain, BlocksAllocateNothing) {
    CGain gain = MakeGain(2, 0.0);
    CBlock block(2, 1);
    Fill(block);
    const auto ramp = MakeRamp(gain, 0.0, 6.0, s_Samples);
    const CAllocationScope scope;
    Run(gain, block.GetStreams(), block.GetStreams(), s_Samples, &ramp);
    Run(gain, block.GetStreams(), block.GetStreams(), s_Samples);
    gain.UpdateOutputs();
    gain.Reset();
    EXPECT_EQ(scope.GetCount(), 0);
    EXPECT_EQ(scope.GetFreedCount(), 0);
}

} // namespace

} // namespace Lathe::Audio::DSP::Filters
