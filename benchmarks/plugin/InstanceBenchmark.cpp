#include "plugin/InstanceBenchmark.h"

#include "datamodel/objects/capture/MTCaptureParam.h"
#include "dsp/PluginsFilters/DualCairnEQ.h"
#include "dsp/streams/AudioStream.h"
#include "plugin/internals/AudioPluginConfig.h"
#include "plugin/internals/AudioPluginInternals.h"
#include "plugin/settings/AudioPluginFilePathsBase.h"
#include "plugin/settings/AudioPluginStaticSettings.h"
#include "serialization/XmlDataObject.h"
#include "support/FastestTimes.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace CairnBench {

using namespace Lathe;
using namespace Lathe::Audio;
using namespace Lathe::Audio::Plugin;

namespace {

constexpr double s_SampleRate = 48000.0;
constexpr int s_FrameCounts[] = {32, 64, 512};
constexpr int s_UndoSteps = 128;
constexpr int s_MemoryFrames = 512;

// No folders: the measured instance reads and writes no files.
class CNoPaths : public CAudioPluginFilePathsBase {
public:
    explicit CNoPaths(const IConstPackageInfo*) : CAudioPluginFilePathsBase("", "", "") {}
};

// The host's objects of the parameters.
template <class I, class IVectorOf>
class THostParams : public IVectorOf {
public:
    explicit THostParams(const DSP::IConstParamInfos& infos) {
        for (int i = 0; i < infos.GetCount(); ++i)
            m_Params.push_back(
                std::make_unique<DataModel::Objects::CMTCaptureParam>(infos.GetElement(i)));
    }
    int GetCount() const override { return static_cast<int>(m_Params.size()); }
    const I& GetElement(int index) const override { return *m_Params[std::size_t(index)]; }
    I& GetElement(int index) override { return *m_Params[std::size_t(index)]; }

private:
    std::vector<std::unique_ptr<DataModel::Objects::CMTCaptureParam>> m_Params;
};

// White noise at about -20 dB, the same on every run.
std::vector<float> MakeNoise(int frames, unsigned seed) {
    std::mt19937 generator(seed);
    std::vector<float> samples(static_cast<std::size_t>(frames));
    for (float& sample : samples)
        sample = (static_cast<float>(generator() >> 8) / 8388608.0f - 1.0f) * 0.17f;
    return samples;
}

// An instance of the equaliser with its host.
class CInstance {
public:
    explicit CInstance(int frames)
        : m_Settings(nullptr),
          m_Internals(MakeConfig()),
          m_Inputs(m_Internals.GetInputParamInfos()),
          m_Outputs(m_Internals.GetOutputParamInfos()) {
        for (unsigned channel = 0; channel < 2; ++channel) {
            m_InputSamples[channel] = MakeNoise(frames, 20 + channel);
            m_OutputSamples[channel] = m_InputSamples[channel];
            m_InputArray[channel].Aim(m_InputSamples[channel].data(), frames);
            m_OutputArray[channel].Aim(m_OutputSamples[channel].data(), frames);
        }
        m_Data.m_pInputs = &m_InputStreams;
        m_Data.m_pOutputs = &m_OutputStreams;
        m_Data.m_SamplesCount = frames;
        m_Internals.ConnectHost(m_Inputs, m_Outputs, nullptr, nullptr);
        DSP::CFilterInitInfo info;
        info.m_ResetToDefaults = true;
        info.m_MaxBlockSize = frames;
        m_Internals.PrepareToProcess(s_SampleRate, info);
        // Every band at work.
        for (int i = 2; i < m_Inputs.GetCount(); ++i)
            MoveParam(i, 0.6);
        ProcessBlock();
    }

    void ProcessBare() { m_Internals.GetFilter()->Process(m_Data); }
    // As a host's adaptor calls it.
    void ProcessBlock() {
        m_Internals.GetBypassManager().SetBypass(false);
        m_Data.m_pVariations = m_Internals.GetPropertiesVariations(m_Data.m_SamplesCount);
        m_Internals.LockProcessing();
        m_Internals.GetBypassManager().Process(m_Data);
        m_Internals.UnlockProcessing();
        m_Internals.AdvanceOutputSync(m_Data.m_SamplesCount);
        if (m_Data.m_pVariations)
            m_Internals.CommitVariations();
        m_Data.m_pVariations = nullptr;
        if (m_Internals.GetOutputSync().IsTimeToSync()) {
            m_Internals.GetOutputSync().ResetCounter();
            m_Internals.ComputeOutputs();
            benchmark::DoNotOptimize(m_Internals.PublishOutputs(false));
        }
        m_Internals.EndBlock();
    }
    void MoveParam(int index, double position) {
        DataModel::Objects::ICaptureParam& param = m_Inputs.GetElement(index);
        param.SetValue(param.GetInfo().GetPositionMapper().PositionToValue(position));
    }
    std::string WriteState() {
        Serialization::CXmlDataObject document("Preset");
        m_Internals.SerializeState(document);
        char* text = nullptr;
        document.GetText(text);
        const std::unique_ptr<char[]> owner(text);
        return text;
    }
    bool ReadState(const std::string& text) {
        Serialization::CXmlDataObject document("Preset");
        return document.Parse(text.data(), static_cast<int>(text.size())) &&
               m_Internals.DeSerializeState(document);
    }
    Serialization::IHistoryManager& GetHistory() { return m_Internals.GetHistory(); }
    // With settings of its own, so that the state holds them.
    void UseOwnMIDISettings() {
        m_Internals.GetConnections().GetMIDIInputDefault()->SetValue(false);
        m_Internals.GetConnections().GetMIDIOutputDefault()->SetValue(false);
    }

private:
    CAudioPluginConfig& MakeConfig() {
        m_Config.filter = std::make_unique<PluginsFilters::CDualCairnEQ>().release();
        m_Config.staticSettings = &m_Settings;
        return m_Config;
    }

    TAudioPluginConfig<CNoPaths> m_Settings;
    CAudioPluginConfig m_Config;
    CAudioPluginInternals m_Internals;
    THostParams<DataModel::Objects::ICaptureParam, IInputParams> m_Inputs;
    THostParams<DataModel::Objects::IConstCaptureParam, IOutputParams> m_Outputs;
    std::vector<float> m_InputSamples[2];
    std::vector<float> m_OutputSamples[2];
    DSP::CAudioStream m_InputArray[2];
    DSP::CAudioStream m_OutputArray[2];
    DSP::CAudioStreams m_InputStreams{m_InputArray, 2, false};
    DSP::CAudioStreams m_OutputStreams{m_OutputArray, 2, false};
    DSP::CFilterProcessData m_Data;
};

void RegisterBlocks(const std::string& name, void (CInstance::*process)()) {
    const auto run = [process](benchmark::State& state, int frames) {
        CInstance instance(frames);
        for (auto _ : state) {
            (instance.*process)();
            benchmark::ClobberMemory();
        }
        state.counters[UnitsCounter] = 1;
    };
    for (const int frames : s_FrameCounts)
        benchmark::RegisterBenchmark((name + std::to_string(frames)).c_str(), run, frames);
}

void RegisterState() {
    benchmark::RegisterBenchmark("state/write", [](benchmark::State& state) {
        CInstance instance(64);
        instance.UseOwnMIDISettings();
        for (auto _ : state)
            benchmark::DoNotOptimize(instance.WriteState());
        state.counters[UnitsCounter] = 1;
    });
    benchmark::RegisterBenchmark("state/read", [](benchmark::State& state) {
        CInstance instance(64);
        instance.UseOwnMIDISettings();
        const std::string text = instance.WriteState();
        for (auto _ : state) {
            if (!instance.ReadState(text))
                state.SkipWithError("the state can't be read");
        }
        state.counters[UnitsCounter] = 1;
    });
}

std::size_t GetUsedMemory() {
    return mallinfo2().uordblks;
}

// What the heap holds for an object. The first one makes what all share.
template <class TMake>
double MeasureMemory(TMake make) {
    make();
    const std::size_t before = GetUsedMemory();
    const auto object = make();
    return static_cast<double>(GetUsedMemory() - before);
}

void PrintMemory() {
    const double filter = MeasureMemory([] {
        auto equaliser = std::make_unique<PluginsFilters::CDualCairnEQ>();
        DSP::CFilterInitInfo info;
        info.m_ResetToDefaults = true;
        info.m_MaxBlockSize = s_MemoryFrames;
        equaliser->Init(s_SampleRate, info);
        return equaliser;
    });
    const double instance =
        MeasureMemory([] { return std::make_unique<CInstance>(s_MemoryFrames); });
    std::printf(
        "Memory, for blocks of %d frames: %.1f KiB for the filter, %.1f KiB for an instance "
        "with it and\nwith the host's parameters and buffers.\n",
        s_MemoryFrames, filter / 1024.0, instance / 1024.0);
}

// What the heap holds more after a full history of which each step moved one parameter.
std::size_t MeasureHistory(bool ownMIDISettings) {
    CInstance instance(64);
    if (ownMIDISettings)
        instance.UseOwnMIDISettings();
    const std::size_t before = GetUsedMemory();
    for (int step = 0; step < s_UndoSteps; ++step) {
        instance.MoveParam(2 + step % 10, 0.1 + 0.005 * step);
        instance.GetHistory().RecordState();
    }
    return GetUsedMemory() - before;
}

} // namespace

void RegisterInstanceBenchmarks() {
    RegisterBlocks("block/filter/", &CInstance::ProcessBare);
    RegisterBlocks("block/instance/", &CInstance::ProcessBlock);
    RegisterState();
}

void PrintInstanceTable(const CFastestTimes& times) {
    std::printf("\nNanoseconds per block of an instance in which nothing changes, outputs at 50 Hz "
                "included,\nbeside those of its bare filter.\n\n%-12s %7s %12s %12s %8s %8s\n",
                "block", "frames", "instance", "filter", "more", "ratio");
    for (const int count : s_FrameCounts) {
        const std::string frames = std::to_string(count);
        const auto instance = times.Get("block/instance/" + frames);
        const auto filter = times.Get("block/filter/" + frames);
        if (instance && filter)
            std::printf("%-12s %7s %12.1f %12.1f %8.1f %8.3f\n", "steady", frames.c_str(),
                        *instance, *filter, *instance - *filter, *instance / *filter);
    }
    const auto write = times.Get("state/write");
    const auto read = times.Get("state/read");
    if (write && read)
        std::printf("\nA whole state, MIDI settings included, as text: written in %.3f ms, read in "
                    "%.3f ms.\n",
                    *write * 1e-6, *read * 1e-6);
    PrintMemory();
    std::printf("%d undo steps of one parameter each: %.0f KiB, with own MIDI settings %.0f KiB.\n",
                s_UndoSteps, static_cast<double>(MeasureHistory(false)) / 1024.0,
                static_cast<double>(MeasureHistory(true)) / 1024.0);
}

} // namespace CairnBench
