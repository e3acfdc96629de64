#include "dsp/PluginsFilters/EqualiserBenchmark.h"

#include "dsp/PluginsFilters/DualCairnEQ.h"
#include "dsp/PluginsFilters/PlainEqualiser.h"
#include "dsp/properties/FilterPropertiesVariations.h"
#include "dsp/streams/AudioStream.h"
#include "support/FastestTimes.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <functional>
#include <random>
#include <string>

namespace CairnBench {

using namespace Lathe::Audio::DSP;

namespace {

constexpr double s_SampleRate = 48000.0;

const CStereoSettings s_Settings = {SSettings{-3.0, 900.0, 1.5, 4.0, -6.0, 3.0},
                                    SSettings{1.0, 2400.0, 0.8, -5.0, 7.5, -2.0}};
const CStereoSettings s_OtherSettings = {SSettings{2.0, 400.0, 2.5, -4.0, 5.0, -6.0},
                                         SSettings{-4.0, 5000.0, 1.2, 6.0, -3.0, 4.0}};

void Write(const CStereoSettings& settings, bool midSide, CFilterProperties& properties) {
    CDynamicParamsValues& params = properties.GetParams();
    params.SetValue(0, midSide ? 1.0 : 0.0);
    for (int channel = 0; channel < 2; ++channel) {
        const SSettings& s = settings[static_cast<std::size_t>(channel)];
        const double values[] = {s.m_Gain, s.m_Frequency, s.m_Bandwidth,
                                 s.m_Low,  s.m_Mid,       s.m_High};
        for (int i = 0; i < 6; ++i)
            params.SetValue(1 + 6 * channel + i, values[i]);
    }
    for (int i = 0; i < params.GetCount(); ++i)
        properties.GetDirty(Params).GetElement(i).SetDirty();
}

// White noise at about -20 dB, the same on every run.
void FillWithNoise(CBuffer& buffer, unsigned seed) {
    std::mt19937 generator(seed);
    for (float& sample : buffer)
        sample = (static_cast<float>(generator() >> 8) / 8388608.0f - 1.0f) * 0.17f;
}

// The filter with a pair of input and of output buffers.
class CRig {
public:
    CRig(int frames, bool midSide) {
        CFilterInitInfo info;
        info.m_ResetToDefaults = true;
        info.m_MaxBlockSize = frames;
        m_Filter.Init(s_SampleRate, info);
        for (unsigned channel = 0; channel < 2; ++channel) {
            m_Inputs[channel].resize(static_cast<std::size_t>(frames));
            m_Outputs[channel].resize(static_cast<std::size_t>(frames));
            FillWithNoise(m_Inputs[channel], 20 + channel);
            m_InputArray[channel].Aim(m_Inputs[channel].data(), frames);
            m_OutputArray[channel].Aim(m_Outputs[channel].data(), frames);
        }
        m_Data.m_pInputs = &m_InputStreams;
        m_Data.m_pOutputs = &m_OutputStreams;
        m_Data.m_SamplesCount = frames;
        CFilterProperties start;
        start.Setup(m_Filter);
        Write(s_Settings, midSide, start);
        m_Filter.SetInputValues(start);
        MakeVariations(m_Forward, s_Settings, s_OtherSettings, midSide);
        MakeVariations(m_Backward, s_OtherSettings, s_Settings, midSide);
    }

    void ProcessSteady() { m_Filter.Process(m_Data); }
    void ProcessSilence() { benchmark::DoNotOptimize(m_Filter.ProcessSilence(m_Data)); }
    // There and back again.
    void ProcessRampedPair() {
        ProcessRamped(m_Forward);
        ProcessRamped(m_Backward);
    }
    void ProcessForward() { ProcessRamped(m_Forward); }

    CBuffer m_Inputs[2];
    CBuffer m_Outputs[2];

private:
    void MakeVariations(CFilterPropertiesVariations& variations, const CStereoSettings& from,
                        const CStereoSettings& to, bool midSide) {
        variations.Setup(m_Filter, 1);
        Write(from, midSide, variations.GetStart());
        Write(to, midSide, variations.GetEnd());
        variations.ComputeRates(m_Data.m_SamplesCount);
    }
    void ProcessRamped(const CFilterPropertiesVariations& variations) {
        CFilterProcessData data = m_Data;
        data.m_pVariations = &variations;
        m_Filter.Process(data);
    }

    PluginsFilters::CDualCairnEQ m_Filter;
    CAudioStream m_InputArray[2];
    CAudioStream m_OutputArray[2];
    CAudioStreams m_InputStreams{m_InputArray, 2, false};
    CAudioStreams m_OutputStreams{m_OutputArray, 2, false};
    CFilterProcessData m_Data;
    CFilterPropertiesVariations m_Forward;
    CFilterPropertiesVariations m_Backward;
};

// The plain loop in the same place.
struct SPlainRig {
    SPlainRig(int frames, bool midSide) : m_Plain(s_SampleRate, s_Settings, midSide) {
        for (unsigned channel = 0; channel < 2; ++channel) {
            m_Inputs[channel].resize(static_cast<std::size_t>(frames));
            m_Outputs[channel].resize(static_cast<std::size_t>(frames));
            FillWithNoise(m_Inputs[channel], 20 + channel);
        }
    }
    void ProcessSteady() { m_Plain.ProcessSteady(m_Inputs, m_Outputs); }
    void ProcessForward() {
        m_Plain.ProcessRamped(m_Inputs, m_Outputs, s_Settings, s_OtherSettings);
    }
    void ProcessRampedPair() {
        ProcessForward();
        m_Plain.ProcessRamped(m_Inputs, m_Outputs, s_OtherSettings, s_Settings);
    }

    CPlainEqualiser m_Plain;
    CBuffer m_Inputs[2];
    CBuffer m_Outputs[2];
};

// Relative to full scale. Steady blocks are equal to the bit; over a ramp the shelves' angles are
// stepped through another, equivalent, product, whose rounding differs.
bool HasSameSamples(const char* what, const CRig& rig, const SPlainRig& plain, float tolerance) {
    for (std::size_t channel = 0; channel < 2; ++channel) {
        for (std::size_t i = 0; i < rig.m_Outputs[channel].size(); ++i) {
            const float difference =
                std::fabs(rig.m_Outputs[channel][i] - plain.m_Outputs[channel][i]);
            if (!(difference <= tolerance)) {
                std::fprintf(stderr,
                             "cairn-bench: %s: channel %zu, frame %zu: the equaliser and the plain "
                             "loop differ by %g\n",
                             what, channel + 1, i, static_cast<double>(difference));
                return false;
            }
        }
    }
    return true;
}

constexpr int s_FrameCounts[] = {64, 512, 4096};

template <class TRig>
void Register(const std::string& name, bool midSide, double blocks, void (TRig::*process)()) {
    const auto run = [=](benchmark::State& state, int frames) {
        TRig rig(frames, midSide);
        for (auto _ : state) {
            (rig.*process)();
            benchmark::ClobberMemory();
        }
        state.counters[UnitsCounter] = frames * blocks;
    };
    for (const int frames : s_FrameCounts)
        benchmark::RegisterBenchmark((name + "/" + std::to_string(frames)).c_str(), run, frames);
}

struct SCase {
    const char* m_Name;
    bool m_MidSide;
    double m_Blocks;
    void (CRig::*m_Process)();
    // Null without a plain loop of its own.
    void (SPlainRig::*m_PlainProcess)();
};
constexpr SCase s_Cases[] = {
    {"steady", false, 1, &CRig::ProcessSteady, &SPlainRig::ProcessSteady},
    {"ramped", false, 2, &CRig::ProcessRampedPair, &SPlainRig::ProcessRampedPair},
    {"mid/side", true, 1, &CRig::ProcessSteady, &SPlainRig::ProcessSteady},
    {"silence", false, 1, &CRig::ProcessSilence, nullptr},
    {"silence m/s", true, 1, &CRig::ProcessSilence, nullptr},
};

} // namespace

bool CheckSameSamples() {
    constexpr int frames = 512;
    bool same = true;
    for (const bool midSide : {false, true}) {
        CRig rig(frames, midSide);
        SPlainRig plain(frames, midSide);
        for (int block = 0; block < 3; ++block) {
            rig.ProcessSteady();
            plain.ProcessSteady();
        }
        same = HasSameSamples(midSide ? "mid/side" : "steady", rig, plain, 0.0f) && same;
    }
    CRig rig(frames, false);
    SPlainRig plain(frames, false);
    rig.ProcessForward();
    plain.ProcessForward();
    return HasSameSamples("ramped", rig, plain, 1e-6f) && same;
}

void RegisterEqualiserBenchmarks() {
    for (const SCase& c : s_Cases) {
        const std::string name = c.m_Name;
        Register(name + "/equaliser", c.m_MidSide, c.m_Blocks, c.m_Process);
        if (c.m_PlainProcess)
            Register(name + "/plain", c.m_MidSide, c.m_Blocks, c.m_PlainProcess);
    }
}

void PrintEqualiserTable(const CFastestTimes& times) {
    std::printf("Nanoseconds per stereo frame, the fastest of all repetitions of one run.\n"
                "Silence has no plain loop of its own: beside it stands that of steady blocks.\n\n"
                "%-12s %7s %12s %12s %8s\n",
                "block", "frames", "equaliser", "plain loop", "ratio");
    for (const SCase& c : s_Cases) {
        const std::string name = c.m_Name;
        const std::string plainName = c.m_PlainProcess ? name : s_Cases[0].m_Name;
        for (const int count : s_FrameCounts) {
            const std::string frames = std::to_string(count);
            const auto equaliser = times.Get(name + "/equaliser/" + frames);
            const auto plain = times.Get(plainName + "/plain/" + frames);
            if (!equaliser)
                continue;
            std::printf("%-12s %7s %12.3f", c.m_Name, frames.c_str(), *equaliser);
            if (plain)
                std::printf(" %12.3f %8.3f", *plain, *equaliser / *plain);
            std::printf("\n");
        }
    }
}

} // namespace CairnBench
