// The bypass manager against a model that goes sample by sample, and against blocks of odd shapes.
#include "plugin/internals/FilterBypassManager.h"

#include "dsp/FilterTestSupport.h"
#include "plugin/PluginTestFilter.h"
#include "support/AllocationCounter.h"

namespace Lathe::Audio::Plugin {

using namespace DSP::Testing;

struct SBlock {
    int m_Samples;
    bool m_Bypass;
    bool m_Silent = false;
};

// One channel around a filter of half the level, with ramps of 441 samples or else of the latency.
class CModel {
public:
    explicit CModel(int latency)
        : m_Latency(static_cast<std::size_t>(latency)),
          m_Step(latency > 0 ? 1.0 / std::max(441, latency) : 0.0),
          m_Dry(m_Latency),
          m_Fed(m_Latency) {}

    void Run(const SBlock& block, const float* input, CSignal& output) {
        if (m_IsActive == block.m_Bypass) {
            m_IsActive = !block.m_Bypass;
            if (m_State == 2 && m_Step > 0.0) {
                m_State = m_IsActive ? 0 : 1;
                m_Position = m_IsActive ? 0.0 : 1.0;
            }
        }
        const bool fadesInput = m_State == 0 && !block.m_Silent;
        const bool fadesOutput = m_State == 1;
        if (block.m_Samples == 0)
            return;
        for (int i = 0; i < block.m_Samples; ++i) {
            const double sample = static_cast<double>(input[i]);
            const double heard = m_State == 2 && !m_IsActive ? 0.0 : sample;
            m_Dry.push_back(sample);
            m_Fed.push_back(fadesInput ? sample * m_Position : heard);
            const double dry = m_Dry[m_Dry.size() - 1 - m_Latency];
            const double wet = 0.5 * m_Fed[m_Fed.size() - 1 - m_Latency];
            const double out = fadesOutput                 ? dry + (wet - dry) * m_Position
                               : fadesInput || !m_IsActive ? dry
                                                           : wet;
            output.push_back(static_cast<float>(out));
            if (fadesInput || fadesOutput)
                m_Position = std::clamp(m_Position + (m_IsActive ? m_Step : -m_Step), 0.0, 1.0);
        }
        if ((fadesInput || fadesOutput) && (m_Position < 1e-6 || m_Position > 1.0 - 1e-6)) {
            const bool isLast = m_State == (m_IsActive ? 1 : 0);
            m_State = isLast || block.m_Silent ? 2 : 1 - m_State;
            m_Position = m_IsActive ? 0.0 : 1.0;
        }
    }

private:
    std::size_t m_Latency;
    double m_Step;
    // All samples so far, behind as many zeros as the latency.
    std::vector<double> m_Dry, m_Fed;
    int m_State = 2;
    double m_Position = 1.0;
    bool m_IsActive = true;
};

class FilterBypassManager : public testing::TestWithParam<int> {
protected:
    // At half the level.
    FilterBypassManager() {
        m_Filter.SetLatency(GetParam());
        m_Level.SetDefaults(m_Filter);
        m_Level.GetParams().SetValue(0, 0.5);
        m_Filter.SetInputValues(m_Level);
        Restart();
    }
    void Restart() {
        m_Filter.Reset();
        m_Manager.SetBypass(false);
        m_Manager.Init(&m_Filter, 44100.0, 1200);
        m_Manager.SetRampTime(10.0);
    }
    // Stride 0 of the outputs is in place.
    CSignals Run(const std::vector<SBlock>& blocks, const CSignals& input, int outputStride) {
        CBuffers inputs(input);
        CBuffers others(2, static_cast<int>(input[0].size()), NAN, std::max(outputStride, 1));
        CBuffers& outputs = outputStride == 0 ? inputs : others;
        int first = 0;
        for (const SBlock& block : blocks) {
            inputs.Aim(first, block.m_Samples);
            others.Aim(first, block.m_Samples);
            const CAllocationScope scope;
            m_Manager.SetBypass(block.m_Bypass);
            const CProcessIO io{
                .m_pInputs = &inputs, .m_pOutputs = &outputs, .m_SamplesCount = block.m_Samples};
            if (!block.m_Silent)
                m_Manager.Process(io);
            const bool hasSignal = !block.m_Silent || m_Manager.ProcessSilence(io);
            EXPECT_EQ(scope.GetCount(), 0);
            for (int i = 0; !hasSignal && i < block.m_Samples; ++i)
                EXPECT_EQ(outputs.At(1, first + i), 0.0f) << "said to hold zeros";
            first += block.m_Samples;
        }
        return outputs.Read();
    }

    CRandom m_Random;
    CPluginTestFilter m_Filter;
    DSP::CFilterProperties m_Level;
    CFilterBypassManager m_Manager;
};
INSTANTIATE_TEST_SUITE_P(, FilterBypassManager, testing::Values(0, 1, 1024));

TEST_P(FilterBypassManager, IsItsTableSampleBySample) {
    // No ramp of 441 samples ends at the end of a block, where the last bit would decide.
    // clang-format off
    const std::vector<SBlock> blocks = {
        // Bypass on: both ramps; silence; bypass off, with a silent block in the input ramp.
        {100, false}, {300, true}, {300, true}, {300, true}, {900, true}, {600, true},
        {50, true, true}, {300, false}, {130, false, true}, {300, false}, {850, false},
        // Turned round in the output ramp, twice.
        {250, false}, {900, false}, {250, true}, {70, false}, {90, true}, {1100, false},
        // Silence while the output fades, and long enough for the dry line to run empty.
        {300, true}, {350, true, true}, {1200, true, true}, {1200, true, true}, {100, true},
        // Turned round in the input ramp.
        {200, false}, {90, true}, {170, true}, {100, true}, {900, false}, {1000, false},
        // Silence while bypass goes off, and in steady states; no samples.
        {1200, false}, {500, false, true}, {0, true}, {1200, true}, {1200, true}, {0, false},
        {1100, false}, {200, false, true}, {1200, false, true}, {1200, false}};
    // clang-format on
    CSignals input(2);
    for (const SBlock& block : blocks) {
        const CSignals noise = m_Random.Noise(2, block.m_Samples);
        for (std::size_t c = 0; c < 2; ++c)
            for (const float sample : noise[c])
                input[c].push_back(block.m_Silent ? 0.0f : sample);
    }
    for (int outputStride = 0; outputStride < 3; ++outputStride) {
        CSignals expected(2);
        for (std::size_t c = 0; c < 2; ++c) {
            CModel model(GetParam());
            for (const SBlock& block : blocks)
                model.Run(block, input[c].data() + expected[c].size(), expected[c]);
        }
        Restart();
        SCOPED_TRACE(outputStride);
        CheckClose(Run(blocks, input, outputStride), expected, 1e-5);
    }
    EXPECT_GT(m_Filter.m_SilentBlocks, 0);
}

TEST_P(FilterBypassManager, TakesBlocksOfAnyShape) {
    CBuffers inputs(m_Random.Noise(3, 64)), outputs(3, 64, 7.0f);
    DSP::CAudioStream cell(&inputs.At(0, 0), 0, 64, 0, false), nothing;
    DSP::CAudioStreamToStreams one(&cell, false), none(nullptr, false), null(&nothing, false);
    DSP::IAudioStreams* const streams[] = {&inputs, &outputs, &one, &none, &null, nullptr};
    for (int round = 0; round < 8 * 36; ++round) {
        m_Manager.SetBypass(round / 36 % 2 == 0);
        const CProcessIO io{.m_pInputs = streams[round % 6],
                            .m_pOutputs = streams[round / 6 % 6],
                            .m_SamplesCount = round % 5 == 0 ? 0 : 64};
        m_Manager.ProcessSilence(io);
        m_Manager.Process(io);
    }

    // Bypassed for good: a latency that has grown, a larger block, an output too many, variations.
    m_Manager.SetBypass(true);
    CBuffers quiet(2, 64, 0.0f);
    for (int i = 0; i < 64; ++i)
        m_Manager.Process({&quiet, &outputs, 64, nullptr, nullptr, nullptr});
    DSP::CFilterPropertiesVariations variations;
    variations.Setup(m_Filter, 1);
    variations.GetEnd().SetDefaults(m_Filter);
    m_Filter.SetLatency(GetParam() + 50);
    const CSignals input = m_Random.Noise(2, 3000);
    CBuffers block(input), result(3, 3000, 7.0f);
    m_Manager.Process({&block, &result, 3000, &variations, nullptr, nullptr});
    EXPECT_EQ(m_Filter.GetOutputParamsValues().GetValue(0), 1.0);
    CSignals expected{input[0], input[1], CSignal(3000)};
    for (CSignal& signal : expected) {
        signal.insert(signal.begin(), static_cast<std::size_t>(GetParam()) + 50, 0.0f);
        signal.resize(3000);
    }
    CheckClose(result.Read(), expected, 0.0);
}

} // namespace Lathe::Audio::Plugin
