// Proves the three second-order sections against difference equations and complex arithmetic, and
// that every loop, layout and kind of change gives the same samples.

#include "dsp/FilterProductInfo.h"
#include "dsp/FilterTestSupport.h"
#include "dsp/filters/PeakFilter.h"
#include "dsp/filters/ShelfFilter.h"

#include <memory>

namespace Lathe::Audio::DSP::Filters {

namespace {

using namespace Testing;

struct SSection {
    const char* m_Name;
    std::unique_ptr<CBiquadFilter> (*m_Make)(int channels);
    SPolynomials (*m_Oracle)(double rate, const CValues& params);
    CValues m_Start;
    CValues m_End;
};

template <class T>
std::unique_ptr<CBiquadFilter> Make(int channels) {
    return std::make_unique<T>(channels);
}
SPolynomials PeakOracle(double rate, const CValues& p) {
    return MakePeak(rate, p[0], p[1], p[2]);
}
SPolynomials LowOracle(double rate, const CValues& p) {
    return MakeShelf(1, rate, p[0], p[1]);
}
SPolynomials HighOracle(double rate, const CValues& p) {
    return MakeShelf(-1, rate, p[0], p[1]);
}

const SSection s_Sections[] = {
    {"peak", Make<CPeakFilter>, PeakOracle, {500.0, 1.0, 12.0}, {3000.0, 0.3, -20.0}},
    {"narrow", Make<CPeakFilter>, PeakOracle, {16000.0, 0.01, 40.0}, {20.0, 5.0, -40.0}},
    {"low", Make<CLowShelfFilter>, LowOracle, {300.0, 12.0}, {2000.0, -30.0}},
    {"low end", Make<CLowShelfFilter>, LowOracle, {10.0, -40.0}, {22000.0, 40.0}},
    {"high", Make<CHighShelfFilter>, HighOracle, {3000.0, -12.0}, {9000.0, 20.0}},
    {"high end", Make<CHighShelfFilter>, HighOracle, {22000.0, 40.0}, {10.0, -40.0}},
};

std::size_t Index(int i) {
    return static_cast<std::size_t>(i);
}

// Follows values that move linearly over the samples; the first sample has the start values.
CSignal RunOracle(const SSection& section, double rate, const CValues& start, const CValues& end,
                  const CSignal& input) {
    CNaiveSection naive;
    CSignal output;
    for (std::size_t i = 0; i < input.size(); ++i) {
        CValues now = start;
        for (std::size_t p = 0; p < now.size(); ++p)
            now[p] +=
                (end[p] - start[p]) * static_cast<double>(i) / static_cast<double>(input.size());
        output.push_back(static_cast<float>(
            naive.Run(section.m_Oracle(rate, now), static_cast<long double>(input[i]))));
    }
    return output;
}

TEST(Sections, AreTheirDifferenceEquationSteadyAndRamped) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    const CSignal input = random.Noise(2000);
    for (const SSection& section : s_Sections) {
        for (double rate : {44100.0, 96000.0}) {
            for (bool ramped : {false, true}) {
                SCOPED_TRACE(std::string(section.m_Name) + (ramped ? ", ramped" : ", steady"));
                const auto filter = section.m_Make(1);
                CRig rig(*filter, rate);
                rig.Set(section.m_Start);
                const CValues& end = ramped ? section.m_End : section.m_Start;
                if (ramped)
                    rig.Move(end);
                // Doubles inside, one rounding to float; the ramp adds up its own roundings, which
                // a pole close to the circle amplifies.
                CheckClose(rig.Run({input})[0],
                           RunOracle(section, rate, section.m_Start, end, input),
                           ramped ? 1e-6 : 2e-7);
            }
        }
    }
}

// Runs a steady block, a ramped one and a steady one.
CSignals RunLayout(const SSection& section, const CSignals& input, int inputStride,
                   int outputStride, bool inPlace) {
    const auto filter = section.m_Make(static_cast<int>(input.size()));
    CRig rig(*filter);
    rig.Set(section.m_Start);
    CBuffers inputs(input, inputStride);
    CBuffers outputs(static_cast<int>(input.size()), 300, 0.0f, outputStride);
    for (int block = 0; block < 3; ++block) {
        if (block == 1)
            rig.Move(section.m_End);
        inputs.Aim(100 * block, 100);
        outputs.Aim(100 * block, 100);
        rig.Process(inputs, inPlace ? inputs : outputs, 100);
    }
    return (inPlace ? inputs : outputs).Read();
}

TEST(Sections, GiveTheSameBitsInEveryLayout) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    const CSignals input = {random.Noise(300), random.Noise(300), random.Noise(300)};
    for (const SSection& section : s_Sections) {
        SCOPED_TRACE(section.m_Name);
        const CSignals all = RunLayout(section, input, 1, 1, false);
        EXPECT_EQ(RunLayout(section, input, 3, 2, false), all);
        for (std::size_t c = 0; c < 3; ++c) {
            const CSignals expected = {all[c]};
            EXPECT_EQ(RunLayout(section, {input[c]}, 1, 1, false), expected);
            EXPECT_EQ(RunLayout(section, {input[c]}, 1, 1, true), expected);
            EXPECT_EQ(RunLayout(section, {input[c]}, 2, 2, true), expected);
            EXPECT_EQ(RunLayout(section, {input[c]}, 1, 4, false), expected);
        }
    }
}

// What the curves draw is what a sine meets.
TEST(Sections, DoToASineWhatTheirCurvesTell) {
    const double rate = 48000.0;
    for (const SSection& section : s_Sections) {
        const auto filter = section.m_Make(1);
        CRig rig(*filter, rate);
        rig.Set(section.m_End);
        filter->UpdateOutputs();
        for (int cycles : {5, 97, 700}) {
            const int settling = 96000; // The slowest one has a time constant of 3400.
            const int measured = 4800;
            const double frequency = cycles * rate / measured;
            const auto turn = [&](int i) { return 2.0 * std::numbers::pi * cycles * i / measured; };
            CSignal sine;
            for (int i = 0; i < settling + measured; ++i)
                sine.push_back(static_cast<float>(std::sin(turn(i))));
            filter->Reset();
            const CSignal output = rig.Run({sine})[0];
            std::complex<double> sum;
            for (int i = settling; i < settling + measured; ++i)
                sum += static_cast<double>(output[Index(i)]) * std::polar(2.0 / measured, -turn(i));
            const double gain = std::abs(sum);
            const double turns = 0.25 + std::arg(sum) / (2.0 * std::numbers::pi);

            SCOPED_TRACE(std::string(section.m_Name) + " at " + std::to_string(frequency));
            const IConstCurves& curves = filter->GetOutputCurves();
            EXPECT_NEAR(gain, curves.GetValue(0).Evaluate(frequency), 1e-4 * gain);
            EXPECT_NEAR(20.0 * std::log10(gain), curves.GetValue(1).Evaluate(frequency), 1e-3);
            EXPECT_NEAR(std::remainder(turns + curves.GetValue(2).Evaluate(frequency), 1.0), 0.0,
                        1e-4);
        }
    }
}

void ExpectEqual(const SBiquadCoefficients& a, const SBiquadCoefficients& b) {
    EXPECT_EQ(a.m_b0, b.m_b0);
    EXPECT_EQ(a.m_b1, b.m_b1);
    EXPECT_EQ(a.m_b2, b.m_b2);
    EXPECT_EQ(a.m_a1, b.m_a1);
    EXPECT_EQ(a.m_a2, b.m_a2);
}

TEST(Sections, AreIdentitiesAtZeroGain) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    const CSignal input = random.Noise(500);
    for (const SSection& section : s_Sections) {
        const auto filter = section.m_Make(1);
        CRig rig(*filter);
        CheckClose(rig.Run({input})[0], input, 1e-7);
        CValues flat = section.m_End;
        flat.back() = 0.0;
        rig.Set(flat);
        filter->Reset();
        CheckClose(rig.Run({input})[0], input, 1e-7);
    }
}

TEST(Sections, EndADecayInExactZeros) {
    for (const SSection& section : {s_Sections[0], s_Sections[2], s_Sections[4]}) {
        const auto filter = section.m_Make(1);
        CRig rig(*filter);
        rig.Set(section.m_Start);
        CSignal impulse(20000, 0.0f);
        impulse[0] = 1.0f;
        const CSignal output = rig.Run({impulse})[0];
        EXPECT_NE(output[100], 0.0f);
        for (float sample : output)
            ASSERT_NE(std::fpclassify(sample), FP_SUBNORMAL);
        const CSignal end = Rest(output, 19000);
        EXPECT_EQ(end, CSignal(end.size(), 0.0f)) << section.m_Name;
    }
}

// What is flushed from the output is gone from the state as well.
TEST(Sections, FeedNoFlushedSampleBack) {
    const auto filter = s_Sections[0].m_Make(1);
    CRig rig(*filter);
    rig.Set(s_Sections[0].m_Start);
    const float input = 1e-38f;
    const CSignal output = rig.Run({{input, 0.0f}})[0];
    EXPECT_EQ(output[0], 0.0f);
    EXPECT_EQ(output[1], static_cast<float>(filter->GetCoefficients().m_b1 * input));
    EXPECT_NE(output[1], 0.0f);
}

TEST(Sections, ForgetTheSignalOnlyWhenTheyAreTold) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    const CSignal noise = random.Noise(50);
    const struct {
        const char* m_Name;
        bool m_Forgets;
        void (*m_Act)(CBiquadFilter& filter);
    } cases[] = {
        {"nothing", false, [](CBiquadFilter&) {}},
        {"no silence", false, [](CBiquadFilter& filter) { filter.OnSilence(0); }},
        {"silence", true, [](CBiquadFilter& filter) { filter.OnSilence(1); }},
        {"reset", true, [](CBiquadFilter& filter) { filter.Reset(); }},
    };
    for (const SSection& section : s_Sections) {
        const auto fresh = section.m_Make(1);
        CRig freshRig(*fresh);
        freshRig.Set(section.m_Start);
        const CSignals once = freshRig.Run({noise});
        const CSignals again = freshRig.Run({noise});
        for (const auto& test : cases) {
            SCOPED_TRACE(test.m_Name);
            const auto filter = section.m_Make(1);
            CRig rig(*filter);
            rig.Set(section.m_Start);
            rig.Run({noise});
            test.m_Act(*filter);
            const std::unique_ptr<IFilter> clone(filter->Clone());
            const CSignals& expected = test.m_Forgets ? once : again;
            EXPECT_EQ(CRig(*clone, rig).Run({noise}), expected) << "the clone";
            EXPECT_EQ(rig.Run({noise}), expected);
        }
    }
}

TEST(Sections, IgnoreWhatDoesNotFit) {
    for (const SSection& section : s_Sections) {
        const SBiquadCoefficients fresh;
        const auto filter = section.m_Make(2);
        // Neither values nor a ramp before Init.
        CRig early(*filter, 0.0);
        early.Set(section.m_End);
        early.Move(section.m_Start);
        early.Run({CSignal(8), CSignal(8)});
        ExpectEqual(filter->GetCoefficients(), fresh);

        CRig rig(*filter);
        rig.Set(section.m_Start);
        const SBiquadCoefficients before = filter->GetCoefficients();
        for (int count : {0, 1, 4})
            filter->OnInputParamsChanged(CParamsValues(count));
        ExpectEqual(filter->GetCoefficients(), before);

        CBuffers one(1, 4, 5.0f);
        CBuffers two(2, 4, 6.0f);
        rig.Process(one, two, 4);
        rig.Process(two, one, 4);
        EXPECT_EQ(one.Read()[0], CSignal(4, 5.0f));
        EXPECT_EQ(two.Read(), CSignals(2, CSignal(4, 6.0f)));
        filter->Process(CFilterProcessData());
    }
}

TEST(Sections, MarkTheirCurvesOnceAChange) {
    for (const SSection& section : s_Sections) {
        const auto filter = section.m_Make(1);
        CRig rig(*filter);
        rig.Set(section.m_Start);
        EXPECT_TRUE(filter->UpdateOutputs());
        EXPECT_EQ(TakeDirty(filter->GetOutputCurvesDirty()), (std::vector{0, 1, 2}));
        rig.Set(section.m_Start);
        EXPECT_FALSE(filter->UpdateOutputs()) << "the same values again";
        rig.Move(section.m_Start);
        rig.Run({CSignal(10)});
        EXPECT_FALSE(filter->UpdateOutputs()) << "a ramp that doesn't move";
        EXPECT_EQ(TakeDirty(filter->GetOutputCurvesDirty()), std::vector<int>());
        rig.Move(section.m_End);
        rig.Run({CSignal(10)});
        EXPECT_TRUE(filter->UpdateOutputs());
        const long double w = GetOmega(44100.0, 1000.0);
        EXPECT_NEAR(filter->GetOutputCurves().GetValue(0).Evaluate(1000.0),
                    EvaluateGain(section.m_Oracle(44100.0, section.m_End), w), 1e-9);
    }
}

struct SRange {
    const char* m_Name;
    const char* m_Unit;
    double m_Min, m_Max, m_Default;
};

void CheckRange(const IConstParamInfo& info, const SRange& expected) {
    EXPECT_STREQ(info.GetName(), expected.m_Name);
    EXPECT_STREQ(info.GetUnit(), expected.m_Unit);
    EXPECT_EQ(info.GetType(), DataModel::Objects::EParamType::Float);
    EXPECT_EQ(info.GetMin(), expected.m_Min) << expected.m_Name;
    EXPECT_EQ(info.GetMax(), expected.m_Max) << expected.m_Name;
    EXPECT_EQ(info.GetDefault(), expected.m_Default) << expected.m_Name;
}

TEST(Sections, Describe) {
    const SRange gain = {"Gain", "dB", -40.0, 40.0, 0.0};
    const SRange shelfFrequency = {"Frequency", "Hz", 10.0, 22000.0, 500.0};
    const struct {
        std::unique_ptr<CBiquadFilter> m_Filter;
        const char* m_Name;
        std::vector<SRange> m_Params;
    } cases[] = {
        {Make<CPeakFilter>(1),
         "Peak Filter",
         {{"Frequency", "Hz", 20.0, 16000.0, 500.0},
          {"Bandwidth", "Octave", 0.009999999776482582, 5.0, 1.0},
          gain}},
        {Make<CLowShelfFilter>(1), "Low Shelf Filter", {shelfFrequency, gain}},
        {Make<CHighShelfFilter>(1), "High Shelf Filter", {shelfFrequency, gain}},
    };
    const std::pair<const char*, SRange> curves[] = {
        {"Frequency Response (Gain)", {"Gain", "dB", 0.01, 100.0, 1.0}},
        {"Frequency Response (Gain dB)", gain},
        {"Frequency Response (Phase)", {"Phase", "", 0.0, 1.0, 0.0}},
    };
    for (const auto& test : cases) {
        EXPECT_STREQ(test.m_Filter->GetProductInfo().GetName(), test.m_Name);
        EXPECT_STREQ(test.m_Filter->GetProductInfo().GetVersion(), "1.0");
        EXPECT_EQ(test.m_Filter->GetProductInfo().GetCategory(), 9);
        const IConstParamInfos& params = test.m_Filter->GetInputParamsInfo();
        ASSERT_EQ(params.GetCount(), static_cast<int>(test.m_Params.size()));
        for (int i = 0; i < params.GetCount(); ++i)
            CheckRange(params.GetElement(i), test.m_Params[Index(i)]);
        const IConstCurveInfos& infos = test.m_Filter->GetOutputCurvesInfo();
        ASSERT_EQ(infos.GetCount(), 3);
        for (int i = 0; i < 3; ++i) {
            EXPECT_STREQ(infos.GetElement(i).GetName(), curves[i].first);
            CheckRange(infos.GetElement(i).GetXInfo(), {"Frequency", "Hz", 20.0, 22000.0, 20.0});
            CheckRange(infos.GetElement(i).GetYInfo(), curves[i].second);
        }
    }
}

} // namespace

} // namespace Lathe::Audio::DSP::Filters
