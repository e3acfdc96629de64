// Proves in which order the base of all filters calls a filter's operations, and for how long a
// filter goes on after its input has fallen silent; and the parts it stands on, clocks of outputs
// and vectors of values.

#include "dsp/TestFilter.h"

#include <cmath>
#include <limits>

namespace Lathe::Audio::DSP {

class BaseCoreDSPFilter : public testing::Test {
protected:
    BaseCoreDSPFilter() {
        m_Channel.Aim(m_Samples, 4);
        m_Data.m_pInputs = m_Data.m_pOutputs = &m_Streams;
        m_Data.m_SamplesCount = 4;
    }

    // One letter a block: P for processed, s for skipped; the outputs agree with the answer.
    char RunSilence() {
        m_Samples[0] = 0.5f;
        const bool signal = m_Filter.ProcessSilence(m_Data);
        EXPECT_EQ(m_Samples[0], signal ? 1.0f : 0.0f);
        EXPECT_EQ(m_Filter.TakeCalls(), signal ? "streams(4) block(4) " : "silence(4) ");
        return signal ? 'P' : 's';
    }

    CTestFilter m_Filter;
    float m_Samples[4] = {};
    CAudioStream m_Channel;
    CAudioStreamToStreams m_Streams{&m_Channel, false};
    CFilterProcessData m_Data;
};

TEST_F(BaseCoreDSPFilter, RunsUntilTheTailIsOverAndThenClears) {
    const std::tuple<int, bool, const char*> cases[] = {
        {0, false, "sss"}, {0, true, "PPP"},   {8, false, "PPs"},      {9, false, "PPP"},
        {3, false, "Pss"}, {-1, false, "PPP"}, {1 << 30, false, "PPP"}};
    for (const auto& [tail, keepsRunning, expected] : cases) {
        m_Filter.SetTail(tail);
        m_Filter.m_KeepsRunning = keepsRunning;
        // A block of signal starts the count anew, as does an Init.
        for (const bool init : {false, true}) {
            init ? m_Filter.Init(48000.0, CFilterInitInfo()) : m_Filter.Process(m_Data);
            m_Filter.TakeCalls();
            std::string letters;
            for (int block = 0; block < 3; ++block)
                letters += RunSilence();
            EXPECT_EQ(letters, expected) << tail;
        }
    }
}

TEST_F(BaseCoreDSPFilter, CallsInOrder) {
    m_Filter.Init(44100.0, {});
    m_Filter.Init(96000.0, {.m_ResetToDefaults = true});
    m_Filter.ResetOutputs();
    m_Filter.Process(m_Data);
    EXPECT_EQ(m_Filter.TakeCalls(), "init(44100) reset(0) init(96000) params(0) reset(0) "
                                    "values(0) curves(0) streams(4) block(4) ");
    CFilterPropertiesVariations variations;
    variations.Setup(m_Filter, 1);
    m_Data.m_pVariations = &variations;
    // Only flags of parameters make values reach the filter, the start before the end.
    for (const int kind : {Strings, Curves, Surfaces, CustomProperties})
        Write(variations.GetStart(), kind, 0, 1);
    Write(variations.GetEnd(), Params, 0, 7);
    m_Filter.ProcessSilence(m_Data);
    Write(variations.GetStart(), Params, 0, 5);
    m_Filter.ProcessSilence(m_Data);
    m_Data.m_pOutputs = nullptr;
    m_Filter.Process(m_Data);
    EXPECT_FALSE(m_Filter.ProcessSilence(m_Data));
    EXPECT_EQ(m_Filter.TakeCalls(),
              "silence(4) params(7) params(5) silence(4) params(7) block(4) ");
}

TEST(OutputDataSync, FallsDueAtOnceAndThenOnceAPeriod) {
    const std::pair<double, int> cases[] = {{10.0, 4410}, {7.0, 6300}, {50000.0, 0},
                                            {-1.0, 0},    {0.0, 0},    {NAN, 0}};
    for (const auto& [rate, period] : cases) {
        COutputDataSync clock(1.0);
        clock.SetSampleRate(44100.0);
        EXPECT_TRUE(clock.IsTimeToSync());
        clock.ResetCounter();
        clock.AddSamples(period / 2);
        clock.SetRefreshRate(rate); // Keeps the counter.
        clock.AddSamples((period - 1) / 2);
        EXPECT_EQ(clock.IsTimeToSync(), period == 0) << rate;
        clock.AddSamples(1);
        EXPECT_TRUE(clock.IsTimeToSync());
        clock.AddSamples(std::numeric_limits<int>::max());
        EXPECT_TRUE(clock.IsTimeToSync()) << "however long nobody asks";
    }
}

TEST(ParamsValues, ReadZeroOutsideAndStoreNothingThere) {
    CParamsValues values(2);
    for (const int index : {-1, 2, 1000}) {
        values.SetValue(index, 9.0);
        EXPECT_EQ(values.GetValue(index), 0.0);
    }
}

} // namespace Lathe::Audio::DSP
