#include "FuzzedInstance.h"

#include "platform/rtas/Dispatcher.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace CairnFuzz {

namespace {

constexpr std::uint32_t s_StateChunk = 0x6D727773; // "mrws"
constexpr std::size_t s_HeaderSize = 56;
constexpr std::size_t s_CodeOffset = 20;
constexpr int s_Frames = 64;

void Require(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "not so: %s\n", what);
    std::abort();
}

template <class TArgument>
TArgument MakeArgument(RTASProcess* process) {
    TArgument argument = {};
    argument.size = sizeof argument;
    argument.process = process;
    return argument;
}

std::int32_t Call(std::int32_t operation, void* argument) {
    return Dispatcher(RTAS_DISPATCHER_VERSION, operation, argument);
}

} // namespace

CFuzzedInstance::CFuzzedInstance() {
    for (const char* folder : {"HOME", "XDG_CONFIG_HOME", "XDG_DOCUMENTS_DIR"})
        ::setenv(folder, "/nonexistent", 1);
    Require(NewMachOPlugIn(nullptr) == RTAS_OK, "the plug-in starts");
    auto call = MakeArgument<RTASNewProcess>(nullptr);
    call.sampleRate = 48000;
    call.maxBlockSize = s_Frames;
    call.inputs = call.outputs = 2;
    Require(Call(RTAS_NEW_PROCESS, &call) == RTAS_OK, "an instance is made");
    m_Process = call.process;
}

CFuzzedInstance::~CFuzzedInstance() {
    CloseMachOPlugIn();
}

void CFuzzedInstance::SetState(const std::string& data) {
    std::string record(s_HeaderSize, '\0');
    record += data;
    const auto size = static_cast<std::int32_t>(record.size());
    std::memcpy(record.data(), &size, sizeof size);
    std::memcpy(record.data() + s_CodeOffset, &s_StateChunk, sizeof s_StateChunk);
    auto chunk = MakeArgument<RTASChunk>(m_Process);
    chunk.code = s_StateChunk;
    chunk.record = record.data();
    chunk.recordSize = size;
    Require(Call(RTAS_SET_CHUNK, &chunk) == RTAS_OK, "a sound record is taken, whatever it holds");
}

void CFuzzedInstance::LoadPreset(const std::string& path) {
    auto call = MakeArgument<RTASPluginCommand>(m_Process);
    call.name = "load-preset";
    call.argument = path.c_str();
    Require(Call(RTAS_PLUGIN_COMMAND, &call) == RTAS_OK, "the command is known");
}

std::string CFuzzedInstance::GetState() const {
    auto chunk = MakeArgument<RTASChunk>(m_Process);
    chunk.code = s_StateChunk;
    Require(Call(RTAS_GET_CHUNK_SIZE, &chunk) == RTAS_OK, "the state has a size");
    std::string record(static_cast<std::size_t>(chunk.recordSize), '\0');
    chunk.record = record.data();
    Require(Call(RTAS_GET_CHUNK, &chunk) == RTAS_OK, "the state is given");
    return record.substr(s_HeaderSize);
}

void CFuzzedInstance::Check() {
    std::array<std::array<float, s_Frames>, 4> samples{};
    samples[0].fill(0.5f);
    samples[1].fill(-0.25f);
    float* const inputs[] = {samples[0].data(), samples[1].data()};
    float* const outputs[] = {samples[2].data(), samples[3].data()};
    auto block = MakeArgument<RTASRender>(m_Process);
    block.inputs = inputs;
    block.outputs = outputs;
    block.numSamples = s_Frames;
    for (int i = 0; i < 3; ++i)
        Require(Call(RTAS_RENDER, &block) == RTAS_OK, "a block is rendered");
    for (const float* output : outputs) {
        for (int i = 0; i < s_Frames; ++i)
            Require(std::isfinite(output[i]), "audio is finite");
    }
    const std::string state = GetState();
    SetState(state);
    Require(GetState() == state, "what was saved comes back");
}

} // namespace CairnFuzz
