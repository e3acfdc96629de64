// Proves one channel of the equaliser: the translation of the user's parameters, seen through the
// curves, the signal through all stages, and the flags of the curves.

#include "dsp/PluginsFilters/CairnEQ.h"
#include "dsp/FilterProductInfo.h"
#include "dsp/PluginsFilters/EqualiserOracle.h"

#include <memory>

namespace PluginsFilters {

namespace {

using namespace Lathe::Audio::DSP::Testing;
using namespace Lathe::Audio::DSP;

void CheckCurves(const CCairnEQ& filter, const CEqualiserOracle& oracle,
                 const std::vector<double>& frequencies) {
    for (int curve = 0; curve < 6; ++curve) {
        for (double frequency : frequencies) {
            const double expected = oracle.EvaluateCurve(curve, frequency);
            EXPECT_NEAR(filter.GetOutputCurves().GetValue(curve).Evaluate(frequency), expected,
                        // The gain is a float, and acos is weak near the real axis.
                        curve == 5 ? 1e-6 : 1e-6 * std::max(1.0, expected))
                << "curve " << curve << " at " << frequency;
        }
    }
}

TEST(CairnEQ, SetsTheShelvesHalfABandwidthBesideThePeak) {
    const struct {
        double m_Rate, m_Frequency, m_Bandwidth, m_Low, m_High;
    } cases[] = {
        {44100.0, 650.0, 1.0, 459.61940777125588, 919.23881554251177},
        {44100.0, 20.0, 5.0, 3.5355339059327378, 113.13708498984761},
        {44100.0, 22000.0, 2.0, 11000.0, 22030.0}, // Asks for 44000.
        {96000.0, 22000.0, 5.0, 3889.0872965260113, 47980.0},
        {96000.0, 22000.0, 2.0, 11000.0, 44000.0},
        {44100.0, 11025.0, 2.0, 5512.5, 22050.0}, // Just the Nyquist frequency.
        {44100.0, 11025.001, 2.0, 5512.5005, 22030.0},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.m_Frequency);
        const CChannelValues values = {3.0, test.m_Frequency, test.m_Bandwidth, 12.0, -9.0, 15.0};
        const CEqualiserOracle oracle(test.m_Rate, values, test.m_Low, test.m_High);
        for (bool ramped : {false, true}) {
            CCairnEQ filter;
            CRig rig(filter, test.m_Rate);
            ramped ? rig.Move(values) : rig.Set(values);
            rig.Run({CSignal(64)});
            filter.UpdateOutputs();
            CheckCurves(filter, oracle, {25.0, 300.0, 1000.0, 9000.0, 21000.0, 22045.0});
        }
    }
}

// Stages commute but for their roundings, which tell their order.
TEST(CairnEQ, IsPreGainPeakLowAndHighShelfInThisOrder) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    CCairnEQ filter;
    CRig rig(filter);
    rig.Set({7.0, 1000.0, 2.0, 9.0, -6.0, 11.0});
    const CSignals input = {random.Noise(200)};
    CSignals expected = input;
    const auto run = [&expected](IFilter&& stage, const CValues& values) {
        CRig stageRig(stage);
        stageRig.Set(values);
        expected = stageRig.Run(expected);
    };
    run(Filters::CGain(1), {7.0});
    run(Filters::CPeakFilter(1), {1000.0, 2.0, -6.0});
    run(Filters::CLowShelfFilter(1), {500.0, 9.0});
    run(Filters::CHighShelfFilter(1), {2000.0, 11.0});
    EXPECT_EQ(rig.Run(input), expected);
}

// Each sample of a moving frequency has the shelves on straight lines between their ends.
TEST(CairnEQ, MovesTheShelvesLinearlyInHertz) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    const int samples = 400;
    const CSignal input = random.Noise(samples);
    const CChannelValues start = {0.0, 1000.0, 4.0, 15.0, 0.0, -15.0};
    const double startLow = 250.0, startHigh = 4000.0;
    const struct {
        double m_Frequency, m_Bandwidth, m_Low, m_High;
    } cases[] = {{4000.0, 4.0, 1000.0, 16000.0},
                 {1000.0, 2.0, 500.0, 2000.0},
                 {16000.0, 2.0, 8000.0, 22030.0}};
    for (const auto& test : cases) {
        CCairnEQ filter;
        CRig rig(filter);
        rig.Set(start);
        if (test.m_Frequency > start[1])
            rig.Move(1, test.m_Frequency);
        if (test.m_Bandwidth < start[2])
            rig.Move(2, test.m_Bandwidth);
        CNaiveSection low, high;
        CSignal expected;
        for (int i = 0; i < samples; ++i) {
            const auto at = [&](double from, double to) {
                return from + (to - from) * i / samples;
            };
            const long double x = static_cast<long double>(input[static_cast<std::size_t>(i)]);
            expected.push_back(static_cast<float>(
                high.Run(MakeShelf(-1, 44100.0, at(startHigh, test.m_High), -15.0),
                         low.Run(MakeShelf(1, 44100.0, at(startLow, test.m_Low), 15.0), x))));
        }
        CheckClose(rig.Run({input})[0], expected, 3e-6);
    }
}

TEST(CairnEQ, IsTheIdentityByDefault) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    CCairnEQ filter;
    CRig rig(filter);
    const CSignal input = random.Noise(2000);
    CheckClose(rig.Run({input})[0], input, 3e-7);
    filter.UpdateOutputs();
    for (double frequency : {20.0, 459.6, 650.0, 5000.0, 22000.0}) {
        for (int curve = 0; curve < 6; ++curve)
            EXPECT_NEAR(filter.GetOutputCurves().GetValue(curve).Evaluate(frequency),
                        curve == 0 ? 1.0 : 0.0, 1e-10);
    }
}

TEST(CairnEQ, DescribesItself) {
    const CCairnEQ filter;
    EXPECT_STREQ(filter.GetProductInfo().GetName(), "Marrow's Cairn EQ");
    EXPECT_STREQ(filter.GetProductInfo().GetVersion(), "3.0");
    EXPECT_EQ(filter.GetProductInfo().GetCategory(), 9);
    EXPECT_STREQ(filter.GetProcessInfo().GetName(), "Main");
    EXPECT_EQ(filter.GetProcessInfo().GetInputs().GetCount(), 1);
    EXPECT_EQ(filter.GetProcessInfo().GetOutputs().GetCount(), 1);
    EXPECT_EQ(filter.GetTailLength(), 0);
    EXPECT_EQ(filter.GetLatency(), 0);
}

// A copy draws its own curves, though the original is gone.
TEST(CairnEQ, WiresACopyToItself) {
    auto original = std::make_unique<CCairnEQ>();
    CRig(*original).Set(0, 20.0);
    original->UpdateOutputs();
    const std::unique_ptr<CCairnEQ> copy(original->Clone());
    CRig(*original).Set(0, -20.0);
    original->UpdateOutputs();
    original.reset();
    EXPECT_NEAR(copy->GetOutputCurves().GetValue(1).Evaluate(1000.0), 20.0, 1e-6);
    EXPECT_EQ(TakeDirty(copy->GetOutputCurvesDirty()), (std::vector{0, 1, 2, 3, 4, 5}));
    CRig(*copy).Set(5, 20.0);
    copy->UpdateOutputs();
    EXPECT_NEAR(copy->GetOutputCurves().GetValue(4).Evaluate(22000.0), 20.0, 1e-2);
}

} // namespace

} // namespace PluginsFilters
