// An instance of the loaded module with buffers of its own, reached by the C entry points alone.
#pragma once

#include "cairn-host/Module.h"
#include "platform/rtas/Dispatcher.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace CairnTorture {

inline constexpr std::uint32_t StateChunk = 0x6D727773; // "mrws"
inline constexpr std::size_t ChunkHeader = 56;

struct SSetup {
    int m_Rate = 48000;
    int m_MaxBlock = 8192;
    int m_Inputs = 2;
    int m_Outputs = 2;
    bool m_IsAudioSuite = false;
};

class CTorturedInstance {
public:
    explicit CTorturedInstance(const CairnHost::CModule& module, const SSetup& setup = {})
        : m_Module(module), m_Setup(setup) {
        auto call = Make<RTASNewProcess>();
        call.sampleRate = setup.m_Rate;
        call.maxBlockSize = setup.m_MaxBlock;
        call.inputs = setup.m_Inputs;
        call.outputs = setup.m_Outputs;
        call.isAudioSuite = setup.m_IsAudioSuite;
        EXPECT_EQ(Call(RTAS_NEW_PROCESS, call), RTAS_OK);
        m_Process = call.process;
        const auto prepare = [&](int count, auto& buffers, auto& pointers) {
            buffers.assign(std::size_t(count), std::vector<float>(std::size_t(setup.m_MaxBlock)));
            for (auto& buffer : buffers)
                pointers.push_back(buffer.data());
        };
        prepare(setup.m_Inputs, m_Inputs, m_InputPointers);
        prepare(setup.m_Outputs, m_Outputs, m_OutputPointers);
    }
    ~CTorturedInstance() {
        if (!m_Process)
            return;
        auto call = Make<RTASProcessCall>();
        EXPECT_EQ(Call(RTAS_DELETE_PROCESS, call), RTAS_OK);
    }
    CTorturedInstance(const CTorturedInstance&) = delete;
    CTorturedInstance& operator=(const CTorturedInstance&) = delete;

    // The module keeps it.
    void Forget() { m_Process = nullptr; }

    // --- Audio ---

    // The code that comes back.
    std::int32_t Render(int frames, std::span<const RTASMIDIEvent> events = {}) {
        auto block = Make<RTASRender>();
        block.inputs = m_InputPointers.data();
        block.outputs = m_OutputPointers.data();
        block.numSamples = frames;
        block.midiIn = events.data();
        block.midiInCount = static_cast<std::int32_t>(events.size());
        return Call(RTAS_RENDER, block);
    }
    // A sample for each channel and frame.
    template <class Sample>
    void Fill(Sample sample) {
        for (auto& buffer : m_Inputs)
            std::generate(buffer.begin(), buffer.end(), sample);
    }
    void FillNoise(std::mt19937& random) {
        Fill([&] { return std::uniform_real_distribution<float>(-1.0f, 1.0f)(random); });
    }
    // Of the first frames of all outputs; infinite when one of them is no number.
    float GetPeak(int frames) const {
        float peak = 0.0f;
        for (const auto& buffer : m_Outputs) {
            for (const float sample : std::span(buffer).first(std::size_t(frames)))
                peak = std::isfinite(sample) ? std::max(peak, std::fabs(sample))
                                             : std::numeric_limits<float>::infinity();
        }
        return peak;
    }
    // The greatest difference between a channel's input and its output.
    float GetDistance(int frames) const {
        float distance = 0.0f;
        for (std::size_t channel = 0; channel < m_Outputs.size(); ++channel) {
            for (std::size_t i = 0; i < std::size_t(frames); ++i) {
                const float d = std::fabs(m_Outputs[channel][i] - m_Inputs[channel][i]);
                distance = d <= distance ? distance : d; // So that a NaN stays.
            }
        }
        return distance;
    }
    void SetRate(int rate) {
        auto call = Make<RTASProcessCall>();
        call.value = rate;
        EXPECT_EQ(Call(RTAS_SET_SAMPLE_RATE, call), RTAS_OK);
    }

    // --- Controls ---

    int GetControlCount() const {
        auto call = Make<RTASProcessCall>();
        EXPECT_EQ(Call(RTAS_GET_CONTROL_COUNT, call), RTAS_OK);
        return call.value;
    }
    std::int32_t GetControl(int control) const {
        auto call = Make<RTASControlText>();
        call.control = control;
        EXPECT_EQ(Call(RTAS_GET_CONTROL_VALUE, call), RTAS_OK);
        return call.value;
    }
    void SetControl(int control, std::int32_t value) {
        auto call = Make<RTASControlText>();
        call.control = control;
        call.value = value;
        EXPECT_EQ(Call(RTAS_SET_CONTROL_VALUE, call), RTAS_OK);
    }
    std::string GetControlText(int control, std::int32_t value) const {
        std::array<char, 64> text{};
        auto call = Make<RTASControlText>();
        call.control = control;
        call.value = value;
        call.length = static_cast<std::int32_t>(text.size()) - 1;
        call.text = text.data();
        EXPECT_EQ(Call(RTAS_CONTROL_VALUE_TO_TEXT, call), RTAS_OK);
        return text.data();
    }

    // --- State ---

    // 0 behind the last.
    std::uint32_t GetChunkCode(int index) const {
        auto chunk = Make<RTASChunk>();
        chunk.index = index;
        return Call(RTAS_GET_CHUNK_CODE, chunk) == RTAS_OK ? chunk.code : 0;
    }
    // The whole record; asked for again while it grows between the two questions.
    std::string GetChunk(std::uint32_t code = StateChunk) const {
        for (;;) {
            auto chunk = Make<RTASChunk>();
            chunk.code = code;
            EXPECT_EQ(Call(RTAS_GET_CHUNK_SIZE, chunk), RTAS_OK);
            std::string record(std::size_t(chunk.recordSize), '\0');
            chunk.record = record.data();
            if (Call(RTAS_GET_CHUNK, chunk) == RTAS_OK)
                return record.substr(0, std::size_t(chunk.recordSize));
        }
    }
    std::int32_t SetChunk(std::string record, std::uint32_t code = StateChunk) {
        auto chunk = Make<RTASChunk>();
        chunk.code = code;
        chunk.record = record.data();
        chunk.recordSize = static_cast<std::int32_t>(record.size());
        return Call(RTAS_SET_CHUNK, chunk);
    }
    // What the command gives; a failure is the test's.
    std::string Command(const char* name, const std::string& argument = {}) {
        auto call = Make<RTASPluginCommand>();
        call.name = name;
        call.argument = argument.c_str();
        EXPECT_EQ(Call(RTAS_PLUGIN_COMMAND, call), RTAS_OK);
        EXPECT_TRUE(call.succeeded) << name << " " << argument << ": " << call.result;
        return call.result;
    }

    const SSetup& GetSetup() const { return m_Setup; }
    std::vector<std::vector<float>> m_Inputs;
    std::vector<std::vector<float>> m_Outputs;

private:
    template <class Argument>
    Argument Make() const {
        Argument argument{};
        argument.size = sizeof argument;
        if constexpr (requires { argument.process; })
            argument.process = m_Process;
        return argument;
    }
    template <class Argument>
    std::int32_t Call(std::int32_t operation, Argument& argument) const {
        return m_Module.Call(operation, &argument);
    }

    const CairnHost::CModule& m_Module;
    SSetup m_Setup;
    RTASProcess* m_Process = nullptr;
    std::vector<float*> m_InputPointers;
    std::vector<float*> m_OutputPointers;
};

} // namespace CairnTorture
