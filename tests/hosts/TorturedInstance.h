// An instance of the loaded module with buffers of its own, reached by the C entry points alone.
#pragma once

#include "cairn-host/Module.h"
#include "platform/rtas/Dispatcher.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
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
        RTASNewProcess call{};
        call.sampleRate = rate;
        call.maxBlockSize = (maxBlock + 1) / 2; // Hosts send larger blocks than they announce.
        call.inputs = call.outputs = 2;
        m_Process = Ask(RTAS_NEW_PROCESS, call).process;
        m_Inputs.fill(std::vector<float>(std::size_t(maxBlock)));
        m_Outputs = m_Inputs;
    }
    ~CTorturedInstance() {
        if (m_Process)
            Ask(RTAS_DELETE_PROCESS, RTASProcessCall{});
    }
    CTorturedInstance(const CTorturedInstance&) = delete;
    CTorturedInstance& operator=(const CTorturedInstance&) = delete;

    // The module keeps it.
    void Forget() { m_Process = nullptr; }

    // --- Audio ---

    // The code that comes back.
    std::int32_t Render(int frames, const std::vector<RTASMIDIEvent>& events = {}) {
        RTASRender block{};
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
            for (int i = 0; i < frames; ++i) {
                const float level = std::fabs(buffer[std::size_t(i)]);
                peak = std::max(peak, level < HUGE_VALF ? level : HUGE_VALF);
            }
        }
        return peak;
    }
    // The greatest difference between a channel's input and its output, which are numbers.
    float GetDistance(int frames) const {
        float distance = 0.0f;
        for (std::size_t c = 0; c < 2; ++c) {
            for (std::size_t i = 0; i < std::size_t(frames); ++i)
                distance = std::max(distance, std::fabs(m_Outputs[c][i] - m_Inputs[c][i]));
        }
        return distance;
    }
    void SetRate(int rate) { Ask(RTAS_SET_SAMPLE_RATE, RTASProcessCall{0, nullptr, rate}); }

    // --- Controls ---

    int GetControlCount() const { return Ask(RTAS_GET_CONTROL_COUNT, RTASProcessCall{}).value; }
    void SetControl(int control, std::int32_t value) {
        Ask(RTAS_SET_CONTROL_VALUE, RTASControlText{0, nullptr, control, value, 0, nullptr});
    }

    // --- State ---

    // 0 behind the last.
    std::uint32_t GetChunkCode(int index) const {
        RTASChunk chunk{};
        chunk.index = index;
        return Call(RTAS_GET_CHUNK_CODE, chunk) == RTAS_OK ? chunk.code : 0;
    }
    // The whole record; asked for again while it grows between the two questions.
    std::string GetChunk(std::uint32_t code = StateChunk) const {
        for (;;) {
            RTASChunk chunk{};
            chunk.code = code;
            chunk = Ask(RTAS_GET_CHUNK_SIZE, chunk);
            std::string record(std::size_t(chunk.recordSize), '\0');
            chunk.record = record.data();
            if (Call(RTAS_GET_CHUNK, chunk) == RTAS_OK)
                return record.substr(0, std::size_t(chunk.recordSize));
        }
    }
    std::int32_t SetChunk(std::string record, std::uint32_t code = StateChunk) {
        RTASChunk chunk{};
        chunk.code = code;
        chunk.record = record.data();
        chunk.recordSize = static_cast<std::int32_t>(record.size());
        return Call(RTAS_SET_CHUNK, chunk);
    }
    // What the command gives; a failure is the test's.
    std::string Command(const char* name, const std::string& argument = {}) {
        RTASPluginCommand call{};
        call.name = name;
        call.argument = argument.c_str();
        call = Ask(RTAS_PLUGIN_COMMAND, call);
        EXPECT_TRUE(call.succeeded) << name << " " << argument << ": " << call.result;
        return call.result;
    }

    int GetFirstRate() const { return m_FirstRate; }

    // As long as the largest block.
    std::array<std::vector<float>, 2> m_Inputs;
    std::array<std::vector<float>, 2> m_Outputs;

private:
    template <class Argument>
    std::int32_t Call(std::int32_t operation, Argument& argument) const {
        argument.size = sizeof argument;
        argument.process = m_Process;
        return m_Module.Call(operation, &argument);
    }
    // The argument as it comes back; a failure is the test's.
    template <class Argument>
    Argument Ask(std::int32_t operation, Argument argument) const {
        EXPECT_EQ(Call(operation, argument), RTAS_OK);
        return argument;
    }

    const CairnHost::CModule& m_Module;
    int m_FirstRate;
    RTASProcess* m_Process = nullptr;
};

} // namespace CairnTorture
