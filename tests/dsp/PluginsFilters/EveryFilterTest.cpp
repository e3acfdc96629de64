// Proves what every filter owes its owner, from the gain stage to the whole equaliser: neither
// blocks nor memory layout show in the samples, ramps land, copies go on, silence and Reset forget.

#include "core/containers/VectorAdapter.h"
#include "dsp/FilterTestSupport.h"
#include "dsp/PluginsFilters/DualCairnEQ.h"
#include "support/AllocationCounter.h"

#include <complex>

namespace Lathe::Audio::DSP {

using namespace Testing;

// b(z) / a(z) in powers of 1/z, not normalised.
struct SPolynomials {
    long double m_b[3], m_a[3];
};

// The sections as the audio EQ cookbook prints them; 1/Q of the peak is its bandwidth, the slope of
// the shelves is 1. Parameters are in the order of the filters.
static SPolynomials MakeGain(long double, const CValues& p) {
    return {{std::pow(10.0L, p[0] / 20.0L), 0, 0}, {1, 0, 0}};
}
static SPolynomials MakePeak(long double radiansPerHertz, const CValues& p) {
    const long double w = radiansPerHertz * p[0];
    const long double a = std::pow(10.0L, p[2] / 40.0L);
    const long double alpha = std::sin(w) / 2 * p[1];
    return {{1 + alpha * a, -2 * std::cos(w), 1 - alpha * a},
            {1 + alpha / a, -2 * std::cos(w), 1 - alpha / a}};
}
// sign 1: the low shelf, -1: the high shelf.
template <int sign>
static SPolynomials MakeShelf(long double radiansPerHertz, const CValues& p) {
    const long double w = radiansPerHertz * p[0];
    const long double a = std::pow(10.0L, p[1] / 40.0L);
    const long double beta = std::sqrt(2 * a) * std::sin(w);
    const long double c = sign * std::cos(w);
    return {{a * (a + 1 - (a - 1) * c + beta), sign * 2 * a * (a - 1 - (a + 1) * c),
             a * (a + 1 - (a - 1) * c - beta)},
            {a + 1 + (a - 1) * c + beta, sign * -2 * (a - 1 + (a + 1) * c),
             a + 1 + (a - 1) * c - beta}};
}

struct SFilter {
    const char* m_Name;
    int m_Channels;
    std::unique_ptr<IFilter> (*m_Make)(int channels);
    SPolynomials (*m_Oracle)(long double radiansPerHertz, const CValues& params);
    CValues m_Start, m_End;
};

template <class T>
static std::unique_ptr<IFilter> Make(int channels) {
    if constexpr (std::is_constructible_v<T, int>)
        return std::make_unique<T>(channels);
    else
        return std::make_unique<T>();
}

using namespace Filters;
using namespace PluginsFilters;

void PrintTo(const SFilter& filter, std::ostream* stream) {
    *stream << filter.m_Name;
}

// clang-format off
static const SFilter s_Filters[] = {
    {"Gain", 3, Make<CGain>, MakeGain, {3.0}, {-60.0}},
    {"Peak", 3, Make<CPeakFilter>, MakePeak, {500.0, 1.0, 12.0}, {16000.0, 0.01, -40.0}},
    {"LowShelf", 3, Make<CLowShelfFilter>, MakeShelf<1>, {300.0, 12.0}, {22000.0, -40.0}},
    {"HighShelf", 3, Make<CHighShelfFilter>, MakeShelf<-1>, {3000.0, -12.0}, {10.0, 40.0}},
    {"CairnEQ", 1, Make<CCairnEQ>, nullptr,
     {3.0, 1000.0, 2.0, 9.0, -6.0, 11.0}, {-6.0, 4000.0, 1.0, -5.0, 8.0, -12.0}},
    {"DualCairnEQ", 2, Make<CDualCairnEQ>, nullptr,
     {0.0, 3.0, 1000.0, 2.0, 9.0, -6.0, 11.0, -3.0, 400.0, 2.0, 6.0, -4.0, 2.5},
     {1.0, -6.0, 4000.0, 1.0, -5.0, 8.0, -12.0, 2.0, 3000.0, 0.7, -8.0, 12.0, 9.0}},
};
// clang-format on

// A filter at its start values, with its driver.
struct SDriven {
    explicit SDriven(const SFilter& test, int channels = 0, int maxBlockSize = 20000)
        : m_Filter(test.m_Make(channels > 0 ? channels : test.m_Channels)),
          m_Rig(*m_Filter, 44100.0, maxBlockSize) {
        m_Rig.Set(test.m_Start);
    }
    // Takes over from the other's filter.
    explicit SDriven(const SDriven& other)
        : m_Filter(other.m_Filter->Clone()), m_Rig(*m_Filter, other.m_Rig) {}

    CValues SampleCurves() {
        m_Filter->UpdateOutputs();
        CValues samples;
        for (int curve = 0; curve < m_Filter->GetOutputCurves().GetCount(); ++curve)
            samples.push_back(m_Filter->GetOutputCurves().GetValue(curve).Evaluate(2500.0));
        return samples;
    }

    std::unique_ptr<IFilter> m_Filter;
    CRig m_Rig;
};

class EveryFilter : public testing::TestWithParam<SFilter> {
protected:
    // A ramped block and a steady one. An output stride of 0 is in place.
    CSignals RunLayout(const CSignals& input, int inputStride, int outputStride) {
        SDriven driven(m_Test, static_cast<int>(input.size()));
        driven.m_Rig.Move(m_Test.m_End);
        return driven.m_Rig.Run(input, {100}, inputStride, outputStride);
    }

    CRandom m_Random;
    const SFilter& m_Test = GetParam();
    const CSignals m_Input = m_Random.Noise(m_Test.m_Channels, 300);
    SDriven m_Driven{m_Test};
};
INSTANTIATE_TEST_SUITE_P(, EveryFilter, testing::ValuesIn(s_Filters),
                         [](const auto& test) { return std::string(test.param.m_Name); });

TEST_P(EveryFilter, IsItsDifferenceEquationSteadyAndRamped) {
    const CSignals input = m_Random.Noise(1, 2000);
    for (int run = 0; m_Test.m_Oracle && run < 8; ++run) {
        const double rate = run & 4 ? 44100.0 : 96000.0;
        const CValues& start = run & 2 ? m_Test.m_Start : m_Test.m_End;
        const CValues& end = run & 1 ? m_Test.m_Start : m_Test.m_End;
        const auto filter = m_Test.m_Make(1);
        const auto oracle = [&](const CValues& values) {
            return m_Test.m_Oracle(2 * std::numbers::pi_v<long double> / rate, values);
        };
        CRig rig(*filter, rate);
        rig.Set(start);
        rig.Move(end);
        // In long double, with the textbook's signs.
        long double x[3] = {}, y[3] = {};
        CSignals expected(1);
        for (float sample : input[0]) {
            CValues now = start;
            for (std::size_t p = 0; p < now.size(); ++p)
                now[p] += (end[p] - now[p]) * static_cast<double>(expected[0].size()) / 2000.0;
            const auto [b, a] = oracle(now);
            x[2] = std::exchange(x[1], std::exchange(x[0], static_cast<long double>(sample)));
            y[2] = std::exchange(y[1], y[0]);
            y[0] = (b[0] * x[0] + b[1] * x[1] + b[2] * x[2] - a[1] * y[1] - a[2] * y[2]) / a[0];
            expected[0].push_back(static_cast<float>(y[0]));
        }
        // The ramp adds up its roundings, which are those of floats in the gain stage.
        CheckClose(rig.Run(input), expected, m_Test.m_Oracle == MakeGain ? 2e-4 : 1e-6);
        // The curve of the end values is the transfer function.
        filter->UpdateOutputs();
        const auto [b, a] = oracle(end);
        for (const double frequency : {25.0, 700.0, 15000.0}) {
            const auto z = std::polar(1.0, -2 * std::numbers::pi * frequency / rate);
            const auto at = [&](const long double(&p)[3]) {
                return std::abs(static_cast<double>(p[0]) + static_cast<double>(p[1]) * z +
                                static_cast<double>(p[2]) * z * z);
            };
            const double gain = filter->GetOutputCurves().GetValue(0).Evaluate(frequency);
            EXPECT_NEAR(gain / (at(b) / at(a)), 1.0, 1e-6) << frequency;
        }
    }
}

TEST_P(EveryFilter, GivesTheSameBitsInEveryLayoutAndSizeOfBlocks) {
    const CSignals all = RunLayout(m_Input, 1, 1);
    EXPECT_EQ(RunLayout(m_Input, 3, 2), all);
    EXPECT_EQ(RunLayout(m_Input, 2, 0), all);
    for (std::size_t c = 0; m_Test.m_Channels == 3 && c < 3; ++c) {
        EXPECT_EQ(RunLayout({m_Input[c]}, 1, 0), CSignals{all[c]});
        EXPECT_EQ(RunLayout({m_Input[c]}, 1, 4), CSignals{all[c]});
    }
    const CSignals whole = m_Driven.m_Rig.Run(m_Input);
    SDriven parts(m_Test, 0, 0);
    std::vector<int> blocks(20);
    for (int& samples : blocks)
        samples = static_cast<int>(m_Random.Between(0.0, 60.0));
    EXPECT_EQ(parts.m_Rig.Run(m_Input, blocks), whole);
}

TEST_P(EveryFilter, LandsARampOnItsEndValues) {
    SDriven direct(m_Test);
    direct.m_Rig.Set(m_Test.m_End);
    const CValues curves = direct.SampleCurves();
    const CSignals expected = direct.m_Rig.Run(m_Input);
    for (int samples : {-1, 0, 1, 100}) {
        SDriven ramped(m_Test);
        ramped.m_Rig.Move(m_Test.m_End);
        CBuffers block(m_Test.m_Channels, 100, 0.5f);
        EXPECT_FALSE(
            ramped.m_Rig.Process(samples < 0 ? nullptr : &block, block, std::abs(samples)));
        EXPECT_TRUE(samples != 0 || block.At(0, 0) == 0.5f);
        if (samples > 0)
            ramped.m_Filter->Reset();
        EXPECT_EQ(ramped.SampleCurves(), curves) << samples;
        EXPECT_EQ(ramped.m_Rig.Run(m_Input), expected) << samples;
    }
}

TEST_P(EveryFilter, IsContinuedByACloneToTheBit) {
    auto original = std::make_unique<SDriven>(m_Test);
    original->m_Rig.Run(m_Input);
    original->m_Rig.Move(m_Test.m_End);
    SDriven clone(*original);
    const CSignals expected = original->m_Rig.Run(m_Input, {200});
    const CValues curves = original->SampleCurves();
    original.reset();
    EXPECT_EQ(clone.m_Rig.Run(m_Input, {200}), expected);
    EXPECT_EQ(clone.SampleCurves(), curves);
}

TEST_P(EveryFilter, ForgetsTheSignalOnlyWhenItIsTold) {
    const CSignals once = m_Driven.m_Rig.Run(m_Input);
    const CSignals twice = SDriven(m_Driven).m_Rig.Run(m_Input);
    CBuffers block(m_Test.m_Channels, 64, 9.0f);
    EXPECT_FALSE(m_Driven.m_Rig.Process(nullptr, block, 0));
    EXPECT_EQ(m_Driven.m_Rig.Run(m_Input), twice);
    m_Driven.m_Filter->Reset();
    EXPECT_EQ(m_Driven.m_Rig.Run(m_Input), once);
    EXPECT_FALSE(m_Driven.m_Rig.Process(nullptr, block, 64));
    EXPECT_EQ(block.Read(), CBuffers(m_Test.m_Channels, 64, 0.0f).Read());
    EXPECT_EQ(m_Driven.m_Rig.Run(m_Input), once);
}

TEST_P(EveryFilter, KeepsWhatIsNotFiniteInItsChannelUntilReset) {
    const CSignals clean = m_Driven.m_Rig.Run(m_Input);
    for (float poison : {NAN, INFINITY, -INFINITY}) {
        for (std::size_t hit = 0; hit < clean.size(); ++hit) {
            CSignals signal = m_Input;
            signal[hit][100] = poison;
            m_Driven.m_Filter->Reset();
            signal = m_Driven.m_Rig.Run(signal);
            EXPECT_FALSE(std::isfinite(signal[hit][100]));
            signal[hit] = clean[hit];
            EXPECT_EQ(signal, clean);
        }
    }
    m_Driven.m_Filter->Reset();
    EXPECT_EQ(m_Driven.m_Rig.Run(m_Input), clean);
}

TEST_P(EveryFilter, EndsADecayInExactZeros) {
    CSignals impulse(m_Input.size(), CSignal(20000, 0.0f));
    for (CSignal& signal : impulse) {
        signal[0] = 1.0f;
        std::fill(signal.begin() + 15000, signal.begin() + 15100, 1e-40f);
    }
    for (const CSignal& output : m_Driven.m_Rig.Run(impulse)) {
        EXPECT_NE(output[0], 0.0f);
        for (float sample : output)
            ASSERT_NE(std::fpclassify(sample), FP_SUBNORMAL);
        EXPECT_EQ(CSignal(output.begin() + 15000, output.end()), CSignal(5000, 0.0f));
    }
}

TEST_P(EveryFilter, IsTheIdentityByDefaultAndBeforeInit) {
    const auto fresh = m_Test.m_Make(m_Test.m_Channels);
    CRig early(*fresh, 0.0);
    early.Set(m_Test.m_End);
    CheckClose(early.Run(m_Input), m_Input, 1e-6);
    CheckClose(CRig(*fresh).Run(m_Input), m_Input, 1e-6);
}

TEST_P(EveryFilter, StandsMissingChannelsAndMissingData) {
    CBuffers all(m_Test.m_Channels, 1, 6.0f);
    CBuffers others(m_Test.m_Channels, 1, 5.0f);
    Lathe::CoreUtilities::TVectorAdapter<IAudioStream> few(others, 0, m_Test.m_Channels - 1);
    m_Driven.m_Rig.Process(&few, all, 1);
    m_Driven.m_Rig.Process(&all, few, 1);
    m_Driven.m_Filter->Process(CFilterProcessData());
    EXPECT_FALSE(m_Driven.m_Filter->ProcessSilence(CFilterProcessData()));
    EXPECT_EQ(others.At(0, 0), 5.0f);
    EXPECT_EQ(all.At(0, 0), 6.0f);
    // Streams without data read as silence and swallow what is written.
    CAudioStream noData[3];
    CAudioStreams nowhere(noData, m_Test.m_Channels, false);
    m_Driven.m_Rig.Process(&nowhere, all, 1);
    EXPECT_EQ(all.Read(), CBuffers(m_Test.m_Channels, 1, 0.0f).Read());
    m_Driven.m_Rig.Process(&all, nowhere, 1);
}

TEST_P(EveryFilter, AllocatesNothingOnTheAudioPath) {
    CBuffers buffers(m_Test.m_Channels, 512, 0.5f);
    m_Driven.m_Rig.Move(m_Test.m_End);
    m_Driven.m_Rig.Process(&buffers, buffers, 16);
    SDriven clone(m_Driven); // Has the room that the original had, whatever part was in use.
    for (SDriven* driven : {&clone, &m_Driven}) {
        const CAllocationScope scope;
        for (int samples : {512, 0, 100}) {
            driven->m_Rig.Move(m_Test.m_End);
            driven->m_Rig.Process(&buffers, buffers, samples);
            driven->m_Filter->UpdateOutputs();
            driven->m_Rig.Set(m_Test.m_Start);
            driven->m_Rig.Move(m_Test.m_End);
            driven->m_Rig.Process(nullptr, buffers, samples);
            driven->m_Filter->ResetOutputs();
            driven->m_Filter->Reset();
        }
        EXPECT_EQ(scope.GetCount(), 0);
    }
}

// What is flushed from the output is gone from the state as well.
TEST(Sections, FeedNoFlushedSampleBack) {
    CPeakFilter filter(1);
    CRig rig(filter);
    rig.Set({500.0, 1.0, 12.0});
    const CSignals output = rig.Run({{1e-38f, 0.0f}});
    EXPECT_EQ(output[0][0], 0.0f);
    EXPECT_EQ(output[0][1], static_cast<float>(filter.GetCoefficients().m_b1 * 1e-38f));
}

} // namespace Lathe::Audio::DSP
