// Proves in which order the base of all filters calls a filter's operations, and for how long a
// filter goes on after its input has fallen silent.

#include "dsp/BaseCoreDSPFilter.h"

#include "dsp/TestFilter.h"
#include "dsp/properties/FilterPropertiesVariations.h"
#include "support/AllocationCounter.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace Lathe::Audio::DSP {

namespace {

constexpr auto s_Most = std::numeric_limits<std::int64_t>::max();

class BaseCoreDSPFilter : public testing::Test {
protected:
    BaseCoreDSPFilter() {
        for (CAudioStream& channel : m_Channels)
            channel.Aim(m_Samples, 4);
        m_Data.m_pInputs = &m_Streams;
        m_Data.m_pOutputs = &m_Streams;
        m_Data.m_SamplesCount = 4;
    }

    // One letter a block: P for processed, s for skipped; the outputs agree with the answer.
    char RunSilence(int samples) {
        m_Data.m_SamplesCount = samples;
        std::fill(std::begin(m_Samples), std::end(m_Samples), 0.5f);
        const bool signal = m_Filter.ProcessSilence(m_Data);
        EXPECT_EQ(m_Samples[0], signal ? 1.0f : 0.0f);
        if (signal) {
            EXPECT_EQ(m_Filter.m_InputsSum, 0.0f);
        }
        std::string count = std::to_string(samples);
        count.insert(0, 1, '(').append(1, ')');
        std::string expected = signal ? "streams" : "silence";
        expected += count;
        if (signal)
            expected.append(" block").append(count);
        EXPECT_EQ(m_Filter.TakeCalls(), expected);
        return signal ? 'P' : 's';
    }

    CTestFilter m_Filter;
    float m_Samples[4] = {};
    CAudioStream m_Channels[2];
    CAudioStreams m_Streams{m_Channels, 2, false};
    CFilterProcessData m_Data;
};

TEST_F(BaseCoreDSPFilter, RunsUntilTheTailIsOverAndThenClears) {
    const struct {
        int m_Tail;
        bool m_KeepsRunning;
        std::vector<int> m_Blocks;
        const char* m_Expected;
    } cases[] = {
        {0, false, {4, 4}, "ss"},
        {0, true, {4, 4}, "PP"},
        {8, false, {4, 4, 4, 4}, "PPss"},
        {9, false, {4, 4, 4, 4}, "PPPs"},
        {3, false, {4, 1, 1}, "Pss"},
        {8, true, {4, 4, 4, 4}, "PPPP"},
        {-1, false, {4, 4, 4, 4}, "PPPP"},
        {std::numeric_limits<int>::max(), false, {4, 4, 4}, "PPP"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.m_Tail);
        m_Filter.SetTail(row.m_Tail);
        m_Filter.m_KeepsRunning = row.m_KeepsRunning;
        // A block of signal starts the count anew, as does an Init.
        for (const bool init : {false, true}) {
            if (init)
                m_Filter.Init(48000.0, CFilterInitInfo());
            else
                m_Filter.Process(m_Data);
            m_Filter.TakeCalls();
            std::string letters;
            for (const int samples : row.m_Blocks)
                letters += RunSilence(samples);
            EXPECT_EQ(letters, row.m_Expected);
        }
    }
}

TEST_F(BaseCoreDSPFilter, TheCountOfSilenceNeverWraps) {
    for (const std::int64_t samples : {s_Most, s_Most - 3, s_Most - 4}) {
        m_Filter.SetTail(0);
        m_Filter.SetSilentSamples(samples);
        EXPECT_EQ(RunSilence(4), 's');
        EXPECT_EQ(RunSilence(4), 's');
        m_Filter.m_KeepsRunning = true;
        EXPECT_EQ(RunSilence(4), 'P');
        m_Filter.m_KeepsRunning = false;
        EXPECT_EQ(RunSilence(4), 's');
    }
}

TEST_F(BaseCoreDSPFilter, SilenceHasTheChannelsOfTheConfiguration) {
    const struct {
        int m_Index;
        const char* m_Name;
        int m_Inputs;
    } cases[] = {{-1, "Main", 2}, {0, "Mono", 1}, {1, "Main", 2}, {-2, "Main", 2}};
    m_Filter.SetTail(-1);
    for (const auto& row : cases) {
        CFilterInitInfo info;
        info.m_IOConfigurationIndex = row.m_Index;
        m_Filter.Init(48000.0, info);
        m_Filter.TakeCalls();
        EXPECT_STREQ(m_Filter.GetCurrentIOConfiguration().GetName(), row.m_Name);
        RunSilence(4);
        EXPECT_EQ(m_Filter.m_InputsCount, row.m_Inputs);
    }
}

TEST_F(BaseCoreDSPFilter, ProcessRunsTheStreamsBeforeTheBlock) {
    m_Filter.Process(m_Data);
    EXPECT_EQ(m_Filter.TakeCalls(), "streams(4) block(4)");
    m_Data.m_pInputs = nullptr;
    m_Filter.Process(m_Data);
    EXPECT_EQ(m_Filter.TakeCalls(), "block(4)");
    m_Data.m_pInputs = &m_Streams;
    m_Data.m_pOutputs = nullptr;
    m_Filter.Process(m_Data);
    EXPECT_EQ(m_Filter.TakeCalls(), "block(4)");
    EXPECT_FALSE(m_Filter.ProcessSilence(m_Data));
    EXPECT_EQ(m_Filter.TakeCalls(), "");
}

TEST_F(BaseCoreDSPFilter, ASkippedBlockStillTakesTheValuesInOrder) {
    CFilterPropertiesVariations variations;
    variations.Setup(m_Filter, 1);
    m_Data.m_pVariations = &variations;
    SetNumber(variations.GetEnd(), Params, 0, 7);
    m_Filter.ProcessSilence(m_Data);
    EXPECT_EQ(m_Filter.TakeCalls(), "silence(4) params(7)") << "the start has no flag";
    SetNumber(variations.GetStart(), Params, 0, 5);
    m_Filter.ProcessSilence(m_Data);
    EXPECT_EQ(m_Filter.TakeCalls(), "params(5) silence(4) params(7)");
    m_Filter.SetTail(-1);
    m_Filter.ProcessSilence(m_Data);
    EXPECT_EQ(m_Filter.TakeCalls(), "streams(4) block(4)") << "the block takes them itself";
}

TEST_F(BaseCoreDSPFilter, InitDerivesThenAppliesDefaultsThenResets) {
    CFilterInitInfo info;
    m_Filter.Init(44100.0, info);
    EXPECT_EQ(m_Filter.TakeCalls(), "init(44100) reset");
    info.m_ResetToDefaults = true;
    m_Filter.Init(96000.0, info);
    EXPECT_EQ(m_Filter.TakeCalls(), "init(96000) params(0) reset");
    m_Filter.Reset();
    m_Filter.ResetOutputs();
    EXPECT_EQ(m_Filter.TakeCalls(), "reset values curves");
}

TEST_F(BaseCoreDSPFilter, OnlyFlagsOfParametersReachTheFilter) {
    CFilterProperties values;
    values.Setup(m_Filter);
    for (const int kind : {Strings, Curves, Surfaces, CustomProperties})
        SetNumber(values, kind, 0, 1);
    m_Filter.SetInputValues(values);
    EXPECT_EQ(m_Filter.TakeCalls(), "");
    values.GetDirty(Params).GetElement(2).SetDirty();
    m_Filter.SetInputValues(values);
    EXPECT_EQ(m_Filter.TakeCalls(), "params(0)");
}

TEST_F(BaseCoreDSPFilter, HasNoOutputsOfItsOwn) {
    EXPECT_FALSE(m_Filter.UpdateOutputs());
    EXPECT_EQ(m_Filter.GetOutputDataSync(), nullptr);
    EXPECT_EQ(m_Filter.GetInternalDSPState(), nullptr);
    const Containers::IConstCount* const vectors[] = {
        &m_Filter.GetOutputParamsValues(),     &m_Filter.GetPrivateOutputParamsValues(),
        &m_Filter.GetOutputStrings(),          &m_Filter.GetOutputStringsDirty(),
        &m_Filter.GetOutputCurves(),           &m_Filter.GetOutputCurvesDirty(),
        &m_Filter.GetOutputSurfaces(),         &m_Filter.GetOutputSurfacesDirty(),
        &m_Filter.GetOutputCustomProperties(), &m_Filter.GetOutputCustomPropertiesDirty(),
        &m_Filter.GetLegacyPresets()};
    for (const Containers::IConstCount* vector : vectors)
        EXPECT_EQ(vector->GetCount(), 0);
}

TEST_F(BaseCoreDSPFilter, BlocksAllocateNothing) {
    CFilterPropertiesVariations variations;
    variations.Setup(m_Filter, 1);
    m_Data.m_pVariations = &variations;
    m_Filter.SetTail(5);
    const CAllocationScope scope;
    for (int block = 0; block < 4; ++block)
        m_Filter.ProcessSilence(m_Data);
    m_Filter.Process(m_Data);
    EXPECT_EQ(scope.GetCount(), 0);
}

} // namespace

} // namespace Lathe::Audio::DSP
