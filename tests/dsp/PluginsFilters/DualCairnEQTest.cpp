// Proves the product's filter as its owner meets it: what it declares, left/right and mid/side with
// settings of their own, blocks of every size and kind, curves and their flags, hostile samples.

#include "dsp/PluginsFilters/DualCairnEQ.h"
#include "dsp/FilterProductInfo.h"
#include "dsp/PluginsFilters/EqualiserOracle.h"
#include "support/AllocationCounter.h"

#include <memory>

namespace PluginsFilters {

namespace {

using namespace Lathe::Audio::DSP::Testing;
using namespace Lathe::Audio::DSP;
using Lathe::DataModel::Objects::EParamType;

constexpr int s_Mode = 0;
constexpr int s_Channel1 = 1;
constexpr int s_Channel2 = 7;

const CChannelValues s_Warm = {-3.0, 400.0, 2.0, 6.0, -4.0, 2.5};
const CChannelValues s_Bright = {2.0, 3000.0, 0.7, -8.0, 12.0, 9.0};

// Every setting away from its default.
void Colour(CRig& rig, double mode) {
    rig.Set(s_Mode, mode);
    rig.Set(s_Warm, s_Channel1);
    rig.Set(s_Bright, s_Channel2);
}

std::string ToText(const IConstParamInfo& info, double value) {
    const std::unique_ptr<char[]> text(info.GetValueToText().ToText(value));
    return text.get();
}

TEST(DualCairnEQ, DeclaresItsParameters) {
    const struct {
        const char* m_Name;
        const char* m_Unit;
        const char* m_Description;
        double m_Min, m_Max, m_Default;
        double m_Value; // Of the text and of the position.
        const char* m_Text;
        double m_Position;
    } rows[] = {
        {"Gain", "dB", "Pre-gain", -40.0, 40.0, 0.0, 10.0, "+10", 0.625},
        {"Frequency", "Hz", "", 20.0, 22000.0, 650.0, 663.32495807108, "663", 0.5},
        {"Bandwidth", "Oct", "", 0.009999999776482582, 5.0, 1.0, 5.0, "5.00", 1.0},
        {"Low", "dB", "", -40.0, 40.0, 0.0, -20.04, "-20.0", 0.2495},
        {"Mid", "dB", "", -40.0, 40.0, 0.0, 0.0, "+0.0", 0.5},
        {"High", "dB", "", -40.0, 40.0, 0.0, 40.0, "+40.0", 1.0},
    };
    const CDualCairnEQ filter;
    const IConstParamInfos& infos = filter.GetInputParamsInfo();
    ASSERT_EQ(infos.GetCount(), 13);
    for (int i = 0; i < 12; ++i) {
        const auto& row = rows[i % 6];
        const IConstParamInfo& info = infos.GetElement(1 + i);
        EXPECT_EQ(info.GetName(), std::string(row.m_Name) + (i < 6 ? " (1)" : " (2)"));
        SCOPED_TRACE(info.GetName());
        EXPECT_EQ(info.GetType(), EParamType::Float);
        EXPECT_STREQ(info.GetUnit(), row.m_Unit);
        EXPECT_STREQ(info.GetDescription(), row.m_Description);
        EXPECT_EQ(info.GetMin(), row.m_Min);
        EXPECT_EQ(info.GetMax(), row.m_Max);
        EXPECT_EQ(info.GetDefault(), row.m_Default);
        EXPECT_EQ(ToText(info, row.m_Value), row.m_Text);
        EXPECT_NEAR(info.GetPositionMapper().ValueToPosition(row.m_Value), row.m_Position, 1e-9);
        EXPECT_NEAR(info.GetPositionMapper().PositionToValue(row.m_Position), row.m_Value, 1e-6);
    }
    const IConstParamInfo& mode = infos.GetElement(0);
    EXPECT_STREQ(mode.GetName(), "Stereo Mode");
    EXPECT_STREQ(mode.GetDescription(), "Left-Right or Mid-Side");
    EXPECT_EQ(mode.GetType(), EParamType::Boolean);
    EXPECT_EQ(mode.GetMin(), 0.0);
    EXPECT_EQ(mode.GetMax(), 1.0);
    EXPECT_EQ(mode.GetDefault(), 0.0);
    EXPECT_EQ(ToText(mode, 0.0), "Stereo");
    EXPECT_EQ(ToText(mode, 1.0), "Mid-Side");

    EXPECT_STREQ(filter.GetProductInfo().GetCompany(), "Marrow Sound");
    EXPECT_STREQ(filter.GetProductInfo().GetName(), "Marrow's Cairn EQ (Dual)");
    EXPECT_STREQ(filter.GetProductInfo().GetVersion(), "2.0");
    EXPECT_STREQ(filter.GetProductInfo().GetDescription(), "Dual Channel 3 bands equalizer");
    EXPECT_EQ(filter.GetProductInfo().GetCategory(), 9);
    EXPECT_EQ(filter.GetProcessInfo().GetInputs().GetCount(), 2);
    EXPECT_EQ(filter.GetProcessInfo().GetOutputs().GetCount(), 2);
}

TEST(DualCairnEQ, DeclaresItsCurves) {
    const struct {
        const char* m_Name;
        const char* m_YName;
        const char* m_YUnit;
        double m_YMin, m_YMax, m_YDefault;
    } rows[] = {
        {"Frequency Response (Gain)", "Gain", "", 0.01, 100.0, 1.0},
        {"Frequency Response (Gain dB)", "Gain", "dB", -40.0, 40.0, 0.0},
        {"Low Frequency Response (Gain dB)", "Gain", "dB", -40.0, 40.0, 0.0},
        {"Mid Frequency Response (Gain dB)", "Gain", "dB", -40.0, 40.0, 0.0},
        {"High Frequency Response (Gain dB)", "Gain", "dB", -40.0, 40.0, 0.0},
        {"Frequency Response (Phase)", "Phase", "", 0.0, 1.0, 0.0},
    };
    CDualCairnEQ filter;
    const IConstCurveInfos& infos = filter.GetOutputCurvesInfo();
    ASSERT_EQ(infos.GetCount(), 12);
    EXPECT_EQ(filter.GetOutputCurves().GetCount(), 12);
    EXPECT_EQ(filter.GetOutputCurvesDirty().GetCount(), 12);
    EXPECT_EQ(filter.GetOutputParamsInfo().GetCount(), 0);
    EXPECT_EQ(filter.GetOutputStringsInfo().GetCount(), 0);
    for (int i = 0; i < 12; ++i) {
        const auto& row = rows[i % 6];
        const IConstCurveInfo& info = infos.GetElement(i);
        EXPECT_EQ(info.GetName(), std::string(row.m_Name) + (i < 6 ? " (1)" : " (2)"));
        SCOPED_TRACE(info.GetName());
        const IConstParamInfo& x = info.GetXInfo();
        EXPECT_STREQ(x.GetName(), "Frequency");
        EXPECT_STREQ(x.GetUnit(), "Hz");
        EXPECT_EQ(x.GetMin(), 20.0);
        EXPECT_EQ(x.GetMax(), 22000.0);
        EXPECT_EQ(x.GetDefault(), 20.0);
        EXPECT_EQ(ToText(x, 440.4), "440");
        EXPECT_NEAR(x.GetPositionMapper().ValueToPosition(std::sqrt(20.0 * 22000.0)), 0.5, 1e-9);
        const IConstParamInfo& y = info.GetYInfo();
        EXPECT_STREQ(y.GetName(), row.m_YName);
        EXPECT_STREQ(y.GetUnit(), row.m_YUnit);
        EXPECT_DOUBLE_EQ(y.GetMin(), row.m_YMin);
        EXPECT_DOUBLE_EQ(y.GetMax(), row.m_YMax);
        EXPECT_DOUBLE_EQ(y.GetDefault(), row.m_YDefault);
    }
}

TEST(DualCairnEQ, IsTheIdentityByDefaultInBothModesAndBetweenThem) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    const CSignals input = {random.Noise(1000), random.Noise(1000)};
    CDualCairnEQ filter;
    CRig rig(filter);
    // The mode moves over the first block of each run.
    for (double mode : {0.0, 1.0, 1.0, 0.0, 0.0}) {
        rig.Move(s_Mode, mode);
        const CSignals output = rig.Run(input, {777});
        for (std::size_t c = 0; c < 2; ++c)
            CheckClose(output[c], input[c], 1e-6);
    }
}

TEST(DualCairnEQ, TreatsLeftAndRightOrMidAndSideEachWithItsSettings) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    const CSignals input = {random.Noise(800), random.Noise(800)};
    const CEqualiserOracle first(44100.0, s_Warm);
    const CEqualiserOracle second(44100.0, s_Bright);
    CDualCairnEQ filter;
    CRig rig(filter);
    Colour(rig, 0.0);
    CSignals output = rig.Run(input);
    CheckClose(output[0], first.Run(input[0]), 3e-6);
    CheckClose(output[1], second.Run(input[1]), 3e-6);

    filter.Reset();
    rig.Set(s_Mode, 1.0);
    output = rig.Run(input);
    CSignals middle(2);
    for (std::size_t i = 0; i < 800; ++i) {
        middle[0].push_back((input[0][i] + input[1][i]) / 2.0f);
        middle[1].push_back((input[1][i] - input[0][i]) / 2.0f);
    }
    const CSignal mid = first.Run(middle[0]);
    const CSignal side = second.Run(middle[1]);
    CSignals expected(2);
    for (std::size_t i = 0; i < 800; ++i) {
        expected[0].push_back(mid[i] - side[i]);
        expected[1].push_back(mid[i] + side[i]);
    }
    for (std::size_t c = 0; c < 2; ++c)
        CheckClose(output[c], expected[c], 5e-6);
}

TEST(DualCairnEQ, HasNothingInTheSideOfAMonoSignal) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    const CSignal mono = random.Noise(500);
    CDualCairnEQ filter;
    CRig rig(filter);
    Colour(rig, 1.0);
    rig.Set(s_Channel2, 40.0);
    const CSignals output = rig.Run({mono, mono});
    EXPECT_EQ(output[0], output[1]);
    EXPECT_GT(GetPeakLevel(output[0]), 0.1);
}

TEST(DualCairnEQ, DoesNotDependOnTheSizeOfBlocks) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    const CSignals input = {random.Noise(3000), random.Noise(3000)};
    for (double mode : {0.0, 1.0, 0.25}) {
        CDualCairnEQ whole;
        CRig wholeRig(whole);
        Colour(wholeRig, mode);
        const CSignals expected = wholeRig.Run(input);
        for (int run = 0; run < 5; ++run) {
            std::vector<int> blocks;
            for (int i = 0; i < 40; ++i)
                blocks.push_back(random.Between(0, 150));
            CDualCairnEQ parts;
            // The host may not tell its block size.
            CRig partsRig(parts, 44100.0, run % 2 == 0 ? 0 : 150);
            Colour(partsRig, mode);
            EXPECT_EQ(partsRig.Run(input, blocks), expected);
        }
    }
}

std::vector<double> SampleCurves(IFilter& filter) {
    filter.UpdateOutputs();
    std::vector<double> samples;
    for (int curve = 0; curve < 12; ++curve) {
        for (double frequency : {31.0, 440.0, 2500.0, 17000.0})
            samples.push_back(filter.GetOutputCurves().GetValue(curve).Evaluate(frequency));
    }
    return samples;
}

TEST(DualCairnEQ, LandsARampOnItsEndValues) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    const CSignals input = {random.Noise(6000), random.Noise(6000)};
    CDualCairnEQ direct;
    CRig directRig(direct);
    Colour(directRig, 1.0);
    const std::vector<double> curves = SampleCurves(direct);
    const CSignals expected = directRig.Run(input);
    const auto move = [](CRig& rig) {
        rig.Move(s_Mode, 1.0);
        rig.Move(s_Warm, s_Channel1);
        rig.Move(s_Bright, s_Channel2);
    };
    for (int samples : {1, 100, 1000}) {
        CDualCairnEQ ramped;
        CRig rig(ramped);
        move(rig);
        const CSignals output = rig.Run(input, {samples});
        EXPECT_EQ(SampleCurves(ramped), curves);
        // The state that the ramp left has decayed to the end.
        for (std::size_t c = 0; c < 2; ++c)
            CheckClose(output[c], expected[c], 1e-6, 5000);
    }
    // Blocks without samples, and silent ones, land without a trace in the signal.
    for (int samples : {-1, 0, 64}) {
        CDualCairnEQ ramped;
        CRig rig(ramped);
        move(rig);
        CBuffers buffers(2, 64, 9.0f);
        if (samples < 0) {
            rig.Process(buffers, buffers, 0);
            EXPECT_EQ(buffers.Read(), CSignals(2, CSignal(64, 9.0f)));
        } else {
            EXPECT_FALSE(rig.ProcessSilence(buffers, samples));
        }
        EXPECT_EQ(SampleCurves(ramped), curves);
        EXPECT_EQ(rig.Run(input), expected);
    }
}

TEST(DualCairnEQ, MarksTheCurvesThatAChangeReaches) {
    const struct {
        int m_Param; // Of channel 1; -1: the mode.
        std::vector<int> m_Dirty;
    } cases[] = {
        {-1, {}},          {0, {0, 1}},       {1, {0, 1, 2, 3, 4, 5}}, {2, {0, 1, 2, 3, 4, 5}},
        {3, {0, 1, 2, 5}}, {4, {0, 1, 3, 5}}, {5, {0, 1, 4, 5}},
    };
    CDualCairnEQ filter;
    CRig rig(filter);
    EXPECT_TRUE(filter.UpdateOutputs());
    // The pre-gain stands at unity from the start.
    EXPECT_EQ(TakeDirty(filter.GetOutputCurvesDirty()).size(), 12u);
    double value = 0.0;
    for (const auto& test : cases) {
        for (int channel : {0, 1}) {
            for (bool ramped : {false, true}) {
                const int param = test.m_Param < 0 ? s_Mode : 1 + test.m_Param + 6 * channel;
                value += 1.0;
                ramped ? rig.Move(param, value) : rig.Set(param, value);
                rig.Run({CSignal(32), CSignal(32)});
                std::vector<int> expected;
                for (int curve : test.m_Dirty)
                    expected.push_back(curve + 6 * channel);
                EXPECT_EQ(filter.UpdateOutputs(), !expected.empty());
                EXPECT_EQ(TakeDirty(filter.GetOutputCurvesDirty()), expected) << param;
                EXPECT_FALSE(filter.UpdateOutputs());
                rig.Move(param, value);
                rig.Run({CSignal(32), CSignal(32)});
                EXPECT_FALSE(filter.UpdateOutputs()) << "moved to where it is";
            }
        }
    }
    // Flags stay until somebody takes them.
    rig.Set(s_Channel1, 30.0);
    filter.UpdateOutputs();
    filter.UpdateOutputs();
    filter.ResetOutputs();
    EXPECT_EQ(TakeDirty(filter.GetOutputCurvesDirty()), (std::vector{0, 1}));
}

TEST(DualCairnEQ, FollowsAChangeOfTheRate) {
    CDualCairnEQ filter;
    for (double rate : {44100.0, 96000.0}) {
        CRig rig(filter, rate);
        Colour(rig, 0.0);
        filter.UpdateOutputs();
        const CEqualiserOracle oracle(rate, s_Bright);
        for (int curve = 0; curve < 6; ++curve)
            EXPECT_NEAR(filter.GetOutputCurves().GetValue(6 + curve).Evaluate(5000.0),
                        oracle.EvaluateCurve(curve, 5000.0), 1e-5);
        filter.Uninit();
    }
}

TEST(DualCairnEQ, IsSilentAtOnceAndForgetsTheSignal) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    const CSignals input = {random.Noise(300), random.Noise(300)};
    for (double mode : {0.0, 1.0}) {
        CDualCairnEQ filter;
        CRig rig(filter);
        Colour(rig, mode);
        const CSignals fresh = rig.Run(input);
        CBuffers outputs(2, 64, 9.0f);
        EXPECT_FALSE(rig.ProcessSilence(outputs, 64));
        EXPECT_EQ(outputs.Read(), CSignals(2, CSignal(64, 0.0f)));
        EXPECT_EQ(rig.Run(input), fresh);
        rig.Run(input);
        filter.Reset();
        EXPECT_EQ(rig.Run(input), fresh);
    }
}

TEST(DualCairnEQ, KeepsWhatIsNotFiniteInItsChannel) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    const CSignals input = {random.Noise(200), random.Noise(200)};
    for (float poison : {NAN, INFINITY, -INFINITY}) {
        for (std::size_t side : {0u, 1u}) {
            CDualCairnEQ filter;
            CRig rig(filter);
            Colour(rig, 0.0);
            const CSignals clean = rig.Run(input);
            CSignals hostile = input;
            hostile[side][100] = poison;
            filter.Reset();
            const CSignals output = rig.Run(hostile);
            EXPECT_EQ(output[1 - side], clean[1 - side]);
            EXPECT_FALSE(std::isfinite(output[side][150]));
            filter.Reset();
            EXPECT_EQ(rig.Run(input), clean);
        }
    }
}

TEST(DualCairnEQ, LeavesTheOutputsAloneWhenChannelsAreMissing) {
    CDualCairnEQ filter;
    CRig rig(filter);
    Colour(rig, 1.0);
    CBuffers one(1, 16, 5.0f);
    CBuffers two(2, 16, 6.0f);
    rig.Process(one, two, 16);
    rig.Process(two, one, 16);
    EXPECT_FALSE(rig.ProcessSilence(one, 16));
    CFilterProcessData nothing;
    nothing.m_SamplesCount = 16;
    filter.Process(nothing);
    EXPECT_FALSE(filter.ProcessSilence(nothing));
    EXPECT_EQ(one.Read(), CSignals(1, CSignal(16, 5.0f)));
    EXPECT_EQ(two.Read(), CSignals(2, CSignal(16, 6.0f)));
}

TEST(DualCairnEQ, IsContinuedByACloneToTheBit) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    const CSignals input = {random.Noise(700), random.Noise(700)};
    for (double mode : {0.0, 1.0}) {
        auto filter = std::make_unique<CDualCairnEQ>();
        CRig rig(*filter);
        Colour(rig, mode);
        rig.Run(input);
        rig.Move(s_Mode, 1.0 - mode);
        rig.Move(s_Bright, s_Channel1);
        const std::unique_ptr<IFilter> clone(filter->Clone());
        CRig cloneRig(*clone, rig);
        const CSignals expected = rig.Run(input, {300});
        const std::vector<double> curves = SampleCurves(*filter);
        filter.reset();
        EXPECT_EQ(cloneRig.Run(input, {300}), expected);
        EXPECT_EQ(SampleCurves(*clone), curves);
        EXPECT_EQ(TakeDirty(clone->GetOutputCurvesDirty()).size(), 12u);
        EXPECT_STREQ(clone->GetInputParamsInfo().GetElement(12).GetName(), "High (2)");
        EXPECT_STREQ(clone->GetProductInfo().GetName(), "Marrow's Cairn EQ (Dual)");
    }
}

// Of a copy neither, whatever part of its room the original was using.
TEST(DualCairnEQ, AllocatesNothingOnTheAudioPath) {
    CDualCairnEQ filter;
    CRig rig(filter, 44100.0, 512);
    CBuffers buffers(2, 512, 0.5f);
    Colour(rig, 0.0);
    rig.Move(s_Channel2, -1.0);
    rig.Process(buffers, buffers, 16);
    const std::unique_ptr<IFilter> clone(filter.Clone());
    CRig cloneRig(*clone, rig);
    const auto check = [&buffers](IFilter& running, CRig& driver) {
        const CAllocationScope scope;
        for (int samples : {512, 0, 100}) {
            for (int param = 0; param < 13; ++param)
                driver.Move(param, samples + param);
            driver.Process(buffers, buffers, samples);
            running.UpdateOutputs();
            driver.Process(buffers, buffers, 512);
            driver.Set(s_Mode, 0.0);
            driver.Set(3, 2.0);
            driver.Move(9, 3.0);
            driver.ProcessSilence(buffers, samples);
            running.ResetOutputs();
            running.Reset();
        }
        EXPECT_EQ(scope.GetCount(), 0);
        EXPECT_EQ(scope.GetFreedCount(), 0);
    };
    check(*clone, cloneRig);
    check(filter, rig);
}

} // namespace

} // namespace PluginsFilters
