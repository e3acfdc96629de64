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

class CTorturedInstance {
public:
    explicit CTorturedInstance(const CairnHost::CModule& module, int rate = 48000,
                               int maxBlock = 8192)
        : m_Module(module), m_FirstRate(rate) {
        auto call = Make<RTASNewProcess>();
        call.sampleRate = rate;
        call.maxBlockSize = (maxBlock + 1) / 2; // Hosts send larger blocks than they announce.
        call.inputs = call.outputs = 2;
        EXPECT_EQ(Call(RTAS_NEW_PROCESS, call), RTAS_OK);
        m_Process = call.process;
        m_Inputs.fill(std::vector<float>(std::size_t(maxBlock)));
        m_Outputs = m_Inputs;
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
        float* const inputs[] = {m_Inputs[0].data(), m_Inputs[1].data()};
        float* const outputs[] = {m_Outputs[0].data(), m_Outputs[1].data()};
        block.inputs = inputs;
        block.outputs = outputs;
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

    int GetFirstRate() const { return m_FirstRate; }

    // As long as the largest block.
    std::array<std::vector<float>, 2> m_Inputs;
    std::array<std::vector<float>, 2> m_Outputs;

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
    int m_FirstRate;
    RTASProcess* m_Process = nullptr;
};

} // namespace CairnTorture
