#include "dsp/PluginsFilters/EqualiserBenchmark.h"

#include "core/Differs.h"
#include "dsp/PluginsFilters/DualCairnEQ.h"
#include "dsp/PluginsFilters/PlainEqualiser.h"
#include "dsp/kernel/CascadeVersions.h"
#include "dsp/properties/FilterPropertiesVariations.h"
#include "dsp/streams/AudioStream.h"
#include "support/FastestTimes.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace CairnBench {

using namespace Lathe::Audio::DSP;

namespace {

constexpr double s_SampleRate = 48000.0;

const CStereoSettings s_Settings = {SSettings{-3.0, 900.0, 1.5, 4.0, -6.0, 3.0},
                                    SSettings{1.0, 2400.0, 0.8, -5.0, 7.5, -2.0}};
const CStereoSettings s_OtherSettings = {SSettings{2.0, 400.0, 2.5, -4.0, 5.0, -6.0},
                                         SSettings{-4.0, 5000.0, 1.2, 6.0, -3.0, 4.0}};

// How the settings move in a ramped block.
enum class EMotion { All, Alike, Gains };

CStereoSettings GetStart(EMotion motion) {
    return motion == EMotion::Alike ? CStereoSettings{s_Settings[0], s_Settings[0]} : s_Settings;
}

CStereoSettings GetEnd(EMotion motion) {
    if (motion == EMotion::Alike)
        return {s_OtherSettings[0], s_OtherSettings[0]};
    CStereoSettings end = s_OtherSettings;
    for (std::size_t channel = 0; channel < 2 && motion == EMotion::Gains; ++channel) {
        end[channel].m_Frequency = s_Settings[channel].m_Frequency;
        end[channel].m_Bandwidth = s_Settings[channel].m_Bandwidth;
    }
    return end;
}

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
}

// Those that a host would find changed.
void MarkChanges(const CFilterProperties& from, CFilterProperties& to) {
    for (int i = 0; i < to.GetParams().GetCount(); ++i) {
        if (Lathe::Core::Differs(from.GetParams().GetValue(i), to.GetParams().GetValue(i)))
            to.GetDirty(Params).GetElement(i).SetDirty();
    }
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
    CRig(int frames, bool midSide, EMotion motion = EMotion::All) {
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
        start.SetDefaults(m_Filter);
        Write(GetStart(motion), midSide, start);
        m_Filter.SetInputValues(start);
        MakeVariations(m_Forward, GetStart(motion), GetEnd(motion), midSide);
        MakeVariations(m_Backward, GetEnd(motion), GetStart(motion), midSide);
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
        MarkChanges(variations.GetStart(), variations.GetEnd());
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
    SPlainRig(int frames, bool midSide, EMotion = EMotion::All)
        : m_Plain(s_SampleRate, s_Settings, midSide) {
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

struct SCase {
    const char* m_Name;
    bool m_MidSide;
    EMotion m_Motion;
    double m_Blocks;
    void (CRig::*m_Process)();
    // The plain case that it is set beside.
    const char* m_Plain;
    // The ratio that is wanted of the first version.
    double m_Wanted;
    // Of blocks of 64 frames, where what isn't a loop shows.
    double m_WantedOfShort;
};
constexpr SCase s_Cases[] = {
    {"steady", false, EMotion::All, 1, &CRig::ProcessSteady, "steady", 0.28, 0.34},
    {"mid/side", true, EMotion::All, 1, &CRig::ProcessSteady, "steady", 0.32, 0.38},
    {"all move", false, EMotion::All, 2, &CRig::ProcessRampedPair, "ramped", 0.75, 0.75},
    {"alike", false, EMotion::Alike, 2, &CRig::ProcessRampedPair, "ramped", 0.50, 0.50},
    {"gains move", false, EMotion::Gains, 2, &CRig::ProcessRampedPair, "ramped", 0.28, 0.28},
    {"silence", false, EMotion::All, 1, &CRig::ProcessSilence, "steady", 0.05, 0.05},
    {"silence m/s", true, EMotion::All, 1, &CRig::ProcessSilence, "steady", 0.05, 0.05},
};

using Kernel::SCascadeVersion;

// The versions that this processor runs, the best first; and the stages one after the other.
std::vector<const SCascadeVersion*> GetRoads() {
    std::vector<const SCascadeVersion*> roads = {nullptr};
    for (const SCascadeVersion& version : Kernel::GetCascadeVersions()) {
        if (version.m_IsSupported)
            roads.insert(roads.begin(), &version);
    }
    return roads;
}

const char* GetName(const SCascadeVersion* road) {
    return road ? road->m_Name : "stages";
}

// A road for the filters that run within the scope.
class CRoadScope {
public:
    explicit CRoadScope(const SCascadeVersion* road) { Kernel::SetCascadeVersion(road); }
    ~CRoadScope() { Kernel::SetCascadeVersion(m_Before); }
    CRoadScope(const CRoadScope&) = delete;
    CRoadScope& operator=(const CRoadScope&) = delete;

private:
    const SCascadeVersion* m_Before = Kernel::GetCascadeVersion();
};

std::string GetBenchmarkName(const std::string& name, const std::string& road, int frames) {
    return name + "/" + road + "/" + std::to_string(frames);
}

template <class TRig, class TProcess>
void Run(benchmark::State& state, TRig& rig, double units, TProcess process) {
    for (auto _ : state) {
        (rig.*process)();
        benchmark::ClobberMemory();
    }
    state.counters[UnitsCounter] = units;
}

bool CheckSameSamples(const SCascadeVersion* road) {
    const CRoadScope scope(road);
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

} // namespace

bool CheckSameSamples() {
    bool same = true;
    for (const SCascadeVersion* road : GetRoads())
        same = CheckSameSamples(road) && same;
    return same;
}

void RegisterEqualiserBenchmarks() {
    for (const int frames : s_FrameCounts) {
        for (const SCase& c : s_Cases) {
            for (const SCascadeVersion* road : GetRoads())
                benchmark::RegisterBenchmark(
                    GetBenchmarkName(c.m_Name, GetName(road), frames).c_str(),
                    [=](benchmark::State& state) {
                        const CRoadScope scope(road);
                        CRig rig(frames, c.m_MidSide, c.m_Motion);
                        Run(state, rig, frames * c.m_Blocks, c.m_Process);
                    });
        }
        benchmark::RegisterBenchmark(GetBenchmarkName("steady", "plain", frames).c_str(),
                                     [=](benchmark::State& state) {
                                         SPlainRig rig(frames, false);
                                         Run(state, rig, frames, &SPlainRig::ProcessSteady);
                                     });
        benchmark::RegisterBenchmark(GetBenchmarkName("ramped", "plain", frames).c_str(),
                                     [=](benchmark::State& state) {
                                         SPlainRig rig(frames, false);
                                         Run(state, rig, frames * 2, &SPlainRig::ProcessRampedPair);
                                     });
    }
}

void PrintEqualiserTable(const CFastestTimes& times) {
    std::printf(
        "Nanoseconds per stereo frame of the plain loops, and beside each version of the "
        "equaliser its\nratio to them: the fastest of all repetitions of one run. Wanted is "
        "what the first version is to reach.\n\n%-12s %7s %12s %8s",
        "block", "frames", "plain loop", "wanted");
    const auto roads = GetRoads();
    for (const SCascadeVersion* road : roads)
        std::printf(" %10s", GetName(road));
    std::printf("\n");
    for (const SCase& c : s_Cases) {
        for (const int frames : s_FrameCounts) {
            const auto plain = times.Get(GetBenchmarkName(c.m_Plain, "plain", frames));
            if (!plain)
                continue;
            std::printf("%-12s %7d %12.3f %8.2f", c.m_Name, frames, *plain,
                        frames == 64 ? c.m_WantedOfShort : c.m_Wanted);
            for (const SCascadeVersion* road : roads) {
                const auto time = times.Get(GetBenchmarkName(c.m_Name, GetName(road), frames));
                time ? std::printf(" %10.3f", *time / *plain) : std::printf(" %10s", "-");
            }
            std::printf("\n");
        }
    }
}

} // namespace CairnBench
