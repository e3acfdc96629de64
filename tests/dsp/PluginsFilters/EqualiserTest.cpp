// Proves the equaliser as its users meet it: its parameters by name and text, the
// signal and the curves of a channel, left/right and mid/side, and which curves a change marks.

#include "dsp/FilterTestSupport.h"
#include "dsp/PluginsFilters/DualCairnEQ.h"

namespace PluginsFilters {

using namespace Lathe::Audio::DSP::Testing;
using namespace Lathe::Audio::DSP;

// Gain, frequency, bandwidth, low, mid, high.
const CValues s_Warm = {-3.0, 400.0, 2.0, 6.0, -4.0, 2.5};
const CValues s_Bright = {2.0, 3000.0, 0.7, -8.0, 12.0, 9.0};

TEST(DualCairnEQ, DeclaresWhatUsersMeet) {
    const struct {
        const char *m_Name, *m_Unit;
        double m_Min, m_Max, m_Default;
        double m_Value, m_Position;
        const char* m_Text; // Of the value.
    } params[] = {
        {"Gain", "dB", -40.0, 40.0, 0.0, 10.0, 0.625, "+10"},
        {"Frequency", "Hz", 20.0, 22000.0, 650.0, 663.32495807108, 0.5, "663"},
        {"Bandwidth", "Oct", 0.009999999776482582, 5.0, 1.0, 5.0, 1.0, "5.00"},
        {"Low", "dB", -40.0, 40.0, 0.0, -20.04, 0.2495, "-20.0"},
        {"Mid", "dB", -40.0, 40.0, 0.0, 0.0, 0.5, "+0.0"},
        {"High", "dB", -40.0, 40.0, 0.0, 40.0, 1.0, "+40.0"},
        {"Stereo Mode", "", 0.0, 1.0, 0.0, 1.0, 1.0, "Mid-Side"},
    };
    CDualCairnEQ filter;
    ASSERT_EQ(filter.GetInputParamsInfo().GetCount(), 13);
    for (int i = 0; i < 13; ++i) {
        const auto& row = params[i > 0 ? (i - 1) % 6 : 6];
        const IConstParamInfo& info = filter.GetInputParamsInfo().GetElement(i);
        const char* const suffix = i == 0 ? "" : i < 7 ? " (1)" : " (2)";
        EXPECT_EQ(info.GetName(), std::string(row.m_Name) + suffix);
        EXPECT_STREQ(info.GetUnit(), row.m_Unit);
        EXPECT_EQ((CValues{info.GetMin(), info.GetMax(), info.GetDefault()}),
                  (CValues{row.m_Min, row.m_Max, row.m_Default}));
        const std::unique_ptr<char[]> text(info.GetValueToText().ToText(row.m_Value));
        EXPECT_STREQ(text.get(), row.m_Text);
        EXPECT_NEAR(info.GetPositionMapper().ValueToPosition(row.m_Value), row.m_Position, 1e-9);
    }
}

// The shelves sit half a bandwidth beside the peak and move linearly in hertz. The numbers are
// exact, and so is the result: stages commute but for their roundings, which tell their order.
TEST(CairnEQ, IsPreGainPeakLowAndHighShelfInThisOrder) {
    CRandom random;
    const CSignals input = random.Noise(1, 256);
    const struct {
        double m_Rate, m_Frequency, m_Bandwidth, m_Low, m_High;
    } cases[] = {{44100.0, 4000.0, 4.0, 1000.0, 16000.0},
                 {44100.0, 1000.0, 2.0, 500.0, 2000.0},
                 {44100.0, 22000.0, 4.0, 5500.0, 22030.0}, // Asks for 88000.
                 {96000.0, 22000.0, 4.0, 5500.0, 47980.0},
                 {44100.0, 11025.0, 2.0, 5512.5, 22050.0}, // Just the Nyquist frequency.
                 {44100.0, 11025.125, 2.0, 5512.5625, 22030.0}};
    for (const auto& test : cases) {
        CSignals signal = input;
        const auto run = [&](IFilter& filter, const CValues& start, const CValues& end) {
            CRig rig(filter, test.m_Rate);
            rig.Set(start);
            for (std::size_t i = 0; i < end.size(); ++i) { // What stays carries no flag.
                if (start[i] != end[i])
                    rig.Move({end[i]}, static_cast<int>(i));
            }
            CSignals output = rig.Run(signal);
            filter.UpdateOutputs();
            return output;
        };
        CCairnEQ whole;
        const CSignals output = run(whole, {7.0, 1000.0, 4.0, 9.0, -6.0, 11.0},
                                    {-5.0, test.m_Frequency, test.m_Bandwidth, 9.0, 12.0, 3.0});
        Filters::CGain gain(1);
        Filters::CPeakFilter peak(1);
        Filters::CLowShelfFilter low(1);
        Filters::CHighShelfFilter high(1);
        signal = run(gain, {7.0}, {-5.0});
        signal = run(peak, {1000.0, 4.0, -6.0}, {test.m_Frequency, test.m_Bandwidth, 12.0});
        signal = run(low, {250.0, 9.0}, {test.m_Low, 9.0});
        signal = run(high, {4000.0, 11.0}, {test.m_High, 3.0});
        EXPECT_EQ(output, signal) << test.m_Frequency;
        for (double frequency : {25.0, 1000.0, 9000.0, 22045.0}) {
            const auto evaluate = [&](const IFilter& filter, int curve) {
                return filter.GetOutputCurves().GetValue(curve).Evaluate(frequency);
            };
            const double all =
                evaluate(gain, 0) * evaluate(low, 0) * evaluate(peak, 0) * evaluate(high, 0);
            const IFilter* const bands[] = {&low, &peak, &high};
            for (int i = 0; i < 3; ++i)
                EXPECT_EQ(evaluate(whole, 2 + i), evaluate(*bands[i], 1));
            EXPECT_NEAR(evaluate(whole, 0), all, 1e-12 * all);
            EXPECT_NEAR(evaluate(whole, 1), 20.0 * std::log10(all), 1e-9);
            EXPECT_NEAR(evaluate(whole, 5),
                        evaluate(low, 2) + evaluate(peak, 2) + evaluate(high, 2), 1e-12);
        }
    }
}

TEST(DualCairnEQ, TreatsLeftAndRightOrMidAndSideEachWithItsSettings) {
    CRandom random;
    const CSignals input = random.Noise(2, 800);
    const auto run = [](const CValues& values, const CSignals& s, float first, float second) {
        CSignal signal;
        for (std::size_t i = 0; i < s[0].size(); ++i)
            signal.push_back(first * s[0][i] + second * s[1][i]);
        CCairnEQ channel;
        CRig rig(channel);
        rig.Set(values);
        return rig.Run({signal})[0];
    };
    CDualCairnEQ filter;
    CRig rig(filter);
    rig.Set(s_Warm, 1);
    rig.Set(s_Bright, 7);
    EXPECT_EQ(rig.Run(input), (CSignals{run(s_Warm, input, 1, 0), run(s_Bright, input, 0, 1)}));
    filter.Reset();
    rig.Set({1.0});
    const CSignals channels = {run(s_Warm, input, 0.5f, 0.5f), run(s_Bright, input, -0.5f, 0.5f)};
    CValues flat(6, 0.0);
    flat[1] = 650.0, flat[2] = 1.0;
    CheckClose(rig.Run(input), {run(flat, channels, 1, -1), run(flat, channels, 1, 1)}, 1e-6);
}

TEST(DualCairnEQ, MarksTheCurvesThatAChangeReaches) {
    // Parameters of a channel, -1: the mode.
    const std::pair<int, std::vector<int>> cases[] = {
        {-1, {}},          {0, {0, 1}},       {1, {0, 1, 2, 3, 4, 5}}, {2, {0, 1, 2, 3, 4, 5}},
        {3, {0, 1, 2, 5}}, {4, {0, 1, 3, 5}}, {5, {0, 1, 4, 5}},
    };
    CDualCairnEQ filter;
    CRig rig(filter);
    EXPECT_TRUE(filter.UpdateOutputs());
    EXPECT_EQ(TakeDirty(filter.GetOutputCurvesDirty()).size(), 12u);
    double value = 0.0;
    for (const auto& [index, reached] : cases) {
        for (int run = 0; run < 4; ++run) {
            const int first = run / 2 * 6; // Of the channel.
            const int param = index < 0 ? 0 : 1 + index + first;
            value += 1.0;
            run % 2 ? rig.Move({value}, param) : rig.Set({value}, param);
            rig.Run(CSignals(2, CSignal(32)));
            std::vector<int> expected = reached;
            for (int& curve : expected)
                curve += first;
            EXPECT_EQ(filter.UpdateOutputs(), !expected.empty());
            EXPECT_FALSE(filter.UpdateOutputs());
            EXPECT_EQ(TakeDirty(filter.GetOutputCurvesDirty()), expected) << param;
            rig.Move({value}, param);
            rig.Run(CSignals(2, CSignal(32)));
            EXPECT_FALSE(filter.UpdateOutputs()) << "moved to where it is";
        }
    }
}

} // namespace PluginsFilters
