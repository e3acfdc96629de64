// Proves the gain stage and the three second-order sections against difference equations, and what
// their curves draw against what a sine meets.

#include "dsp/FilterTestSupport.h"
#include "dsp/filters/Gain.h"
#include "dsp/filters/PeakFilter.h"
#include "dsp/filters/ShelfFilter.h"

#include <memory>

namespace Lathe::Audio::DSP::Filters {

using namespace Testing;

struct SSection {
    const char* m_Name;
    std::unique_ptr<IFilter> (*m_Make)();
    SPolynomials (*m_Oracle)(double rate, const CValues& params);
    CValues m_Start;
    CValues m_End;
};

template <class T>
std::unique_ptr<IFilter> Make() {
    return std::make_unique<T>(1);
}
SPolynomials GainOracle(double, const CValues& p) {
    return {{std::pow(10.0L, static_cast<long double>(p[0]) / 20), 0, 0}, {1, 0, 0}};
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
    {"gain", Make<CGain>, GainOracle, {-60.0}, {30.0}},
};

TEST(Sections, AreTheirDifferenceEquationSteadyAndRamped) {
    CRandom random;
    const CSignals input = random.Noise(1, 2000);
    for (const SSection& section : s_Sections) {
        for (double rate : {44100.0, 96000.0}) {
            for (bool ramped : {false, true}) {
                SCOPED_TRACE(std::string(section.m_Name) + (ramped ? ", ramped" : ", steady"));
                const auto filter = section.m_Make();
                CRig rig(*filter, rate);
                rig.Set(section.m_Start);
                const CValues& end = ramped ? section.m_End : section.m_Start;
                if (ramped)
                    rig.Move(end);
                CNaiveSection naive;
                CSignals expected(1);
                for (float sample : input[0]) {
                    CValues now = section.m_Start;
                    for (std::size_t p = 0; p < now.size(); ++p)
                        now[p] += (end[p] - now[p]) * static_cast<double>(expected[0].size()) /
                                  static_cast<double>(input[0].size());
                    expected[0].push_back(static_cast<float>(
                        naive.Run(section.m_Oracle(rate, now), static_cast<long double>(sample))));
                }
                // Doubles inside, one rounding to float; the ramp adds up its own roundings, which
                // a pole close to the circle amplifies, and which are floats in the gain stage.
                const bool isGain = section.m_Oracle == GainOracle;
                CheckClose(rig.Run(input), expected, !ramped ? 2e-7 : isGain ? 2e-4 : 1e-6);
            }
        }
    }
}

// What is flushed from the output is gone from the state as well.
TEST(Sections, FeedNoFlushedSampleBack) {
    CPeakFilter filter(1);
    CRig rig(filter);
    rig.Set(s_Sections[0].m_Start);
    const CSignals output = rig.Run({{1e-38f, 0.0f}});
    EXPECT_EQ(output[0][0], 0.0f);
    EXPECT_EQ(output[0][1], static_cast<float>(filter.GetCoefficients().m_b1 * 1e-38f));
}

TEST(Sections, TakeTheirOwnNumberOfValuesOnly) {
    CGain gain(1);
    CRig rig(gain);
    for (int count : {0, 2, 1}) {
        gain.OnInputParamsChanged(CParamsValues(count, CValues(2, 20.0).data()));
        EXPECT_EQ(gain.UpdateOutputs(), count == 1);
    }
}

} // namespace Lathe::Audio::DSP::Filters
