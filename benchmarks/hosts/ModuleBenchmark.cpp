#include "hosts/ModuleBenchmark.h"

#include "cairn-host/Module.h"
#include "platform/rtas/Dispatcher.h"
#include "support/FastestTimes.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace CairnBench {

namespace {

constexpr int s_SampleRate = 48000;
constexpr int s_FrameCounts[] = {32, 64, 512};
constexpr int s_MaxFrames = 512;
constexpr int s_Loads = 20;
// Behind the bypass and the stereo mode.
constexpr int s_FirstBandControl = 3;
// At 0.6 of the travel of each, as for the bare filter.
constexpr std::int32_t s_BandValue = 429496729;

template <class TArgument>
TArgument MakeArgument(RTASProcess* process) {
    TArgument argument = {};
    argument.size = sizeof argument;
    argument.process = process;
    return argument;
}

// The module, loaded, with an instance whose bands are all at work.
class CModuleInstance {
public:
    CModuleInstance() {
        using Clock = std::chrono::steady_clock;
        const auto begin = Clock::now();
        m_IsOk = m_Module.Load(CAIRN_MODULE_PATH).IsOk();
        const auto loaded = Clock::now();
        auto call = MakeArgument<RTASNewProcess>(nullptr);
        call.sampleRate = s_SampleRate;
        call.maxBlockSize = s_MaxFrames;
        call.inputs = call.outputs = 2;
        m_IsOk = m_IsOk && m_Module.Call(RTAS_NEW_PROCESS, &call) == RTAS_OK;
        m_LoadMilliseconds = std::chrono::duration<double, std::milli>(loaded - begin).count();
        m_InstanceMilliseconds =
            std::chrono::duration<double, std::milli>(Clock::now() - loaded).count();
        if (!m_IsOk)
            return;
        m_Render = MakeArgument<RTASRender>(call.process);
        m_Render.inputs = m_Inputs;
        m_Render.outputs = m_Outputs;
        m_Render.transport = &m_Transport;
        MoveBands();
    }
    ~CModuleInstance() {
        if (!m_IsOk)
            return;
        auto call = MakeArgument<RTASProcessCall>(m_Render.process);
        m_Module.Call(RTAS_DELETE_PROCESS, &call);
    }
    CModuleInstance(const CModuleInstance&) = delete;
    CModuleInstance& operator=(const CModuleInstance&) = delete;

    bool IsOk() const { return m_IsOk; }
    double GetLoadMilliseconds() const { return m_LoadMilliseconds; }
    double GetInstanceMilliseconds() const { return m_InstanceMilliseconds; }
    bool Render(int frames) {
        m_Render.numSamples = frames;
        return m_Module.Call(RTAS_RENDER, &m_Render) == RTAS_OK;
    }

private:
    void MoveBands() {
        auto count = MakeArgument<RTASProcessCall>(m_Render.process);
        m_Module.Call(RTAS_GET_CONTROL_COUNT, &count);
        for (int control = s_FirstBandControl; control <= count.value; ++control) {
            auto call = MakeArgument<RTASControlText>(m_Render.process);
            call.control = control;
            call.value = s_BandValue;
            m_Module.Call(RTAS_SET_CONTROL_VALUE, &call);
        }
    }
    // White noise at about -20 dB, the same on every run.
    static std::vector<float> MakeNoise(unsigned seed) {
        std::mt19937 generator(seed);
        std::vector<float> samples(s_MaxFrames);
        for (float& sample : samples)
            sample = (static_cast<float>(generator() >> 8) / 8388608.0f - 1.0f) * 0.17f;
        return samples;
    }

    CairnHost::CModule m_Module;
    bool m_IsOk = false;
    double m_LoadMilliseconds = 0.0;
    double m_InstanceMilliseconds = 0.0;
    RTASRender m_Render = {};
    RTASTransport m_Transport = {1, 120.0, 4, 4, 0, 0, 0, 0, 0};
    std::vector<float> m_InputSamples[2] = {MakeNoise(20), MakeNoise(21)};
    std::vector<float> m_OutputSamples[2] = {MakeNoise(20), MakeNoise(21)};
    float* m_Inputs[2] = {m_InputSamples[0].data(), m_InputSamples[1].data()};
    float* m_Outputs[2] = {m_OutputSamples[0].data(), m_OutputSamples[1].data()};
};

void RunBlocks(benchmark::State& state, int frames) {
    CModuleInstance instance;
    if (!instance.IsOk() || !instance.Render(frames)) {
        state.SkipWithError("the module can't be loaded");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(instance.Render(frames));
        benchmark::ClobberMemory();
    }
    state.counters[UnitsCounter] = 1;
}

struct SLoadTimes {
    double m_Load = 0.0;
    double m_Instance = 0.0;
};

SLoadTimes MeasureLoad() {
    const CModuleInstance instance;
    return {instance.GetLoadMilliseconds(), instance.GetInstanceMilliseconds()};
}

SLoadTimes g_FirstLoad;

void PrintLoad(const char* name, const SLoadTimes& times) {
    std::printf("%-12s %10.2f %10.2f %10.2f\n", name, times.m_Load, times.m_Instance,
                times.m_Load + times.m_Instance);
}

} // namespace

void RegisterModuleBenchmarks() {
    // The measured instances find no files of the user's.
    for (const char* folder : {"HOME", "XDG_CONFIG_HOME", "XDG_DOCUMENTS_DIR"})
        ::setenv(folder, "/nonexistent", 1);
    g_FirstLoad = MeasureLoad();
    for (const int frames : s_FrameCounts)
        benchmark::RegisterBenchmark(("block/module/" + std::to_string(frames)).c_str(), RunBlocks,
                                     frames);
}

void PrintModuleTable(const CFastestTimes& times) {
    std::printf("\nNanoseconds per block through the loaded module, by its C entry points, beside "
                "those of the\nbare filter; at most 1000 more are wanted.\n\n"
                "%-12s %7s %12s %12s %8s %8s\n",
                "block", "frames", "module", "filter", "more", "ratio");
    for (const int count : s_FrameCounts) {
        const std::string frames = std::to_string(count);
        const auto module = times.Get("block/module/" + frames);
        const auto filter = times.Get("block/filter/" + frames);
        if (module && filter)
            std::printf("%-12s %7s %12.1f %12.1f %8.1f %8.3f\n", "steady", frames.c_str(), *module,
                        *filter, *module - *filter, *module / *filter);
    }
    SLoadTimes warm = MeasureLoad();
    for (int i = 1; i < s_Loads; ++i) {
        const SLoadTimes next = MeasureLoad();
        if (next.m_Load + next.m_Instance < warm.m_Load + warm.m_Instance)
            warm = next;
    }
    std::printf("\nMilliseconds from nothing to an instance that can render; under 50 are wanted.\n"
                "\n%-12s %10s %10s %10s\n",
                "module", "load", "instance", "both");
    PrintLoad("first", g_FirstLoad);
    PrintLoad("again", warm);
}

} // namespace CairnBench
