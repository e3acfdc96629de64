// A module that no plug-in stands behind, for what the real one doesn't do: it delays, sends back
// the MIDI that it gets, tells as its state what the host's time line was, and comes in broken
// kinds. FAKE_KIND is one of the words below.
#include "platform/rtas/Dispatcher.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <sstream>
#include <string>

#define FAKE_EXPORT __attribute__((visibility("default")))

namespace {

enum EKind { Good, Version, Entry, Start };
constexpr EKind s_Kind = FAKE_KIND;

constexpr int s_Delay = 100; // In frames; also the most of a block.
constexpr std::size_t s_HeaderSize = 56;
constexpr std::uint32_t s_Code = 0x66616B65; // 'fake'

std::array<std::array<float, s_Delay>, 2> s_Line;
std::string s_State;

void KeepTransport(const RTASTransport& now) {
    std::ostringstream text;
    text << now.isPlaying << ' ' << now.tempo << ' ' << now.meterNumerator << '/'
         << now.meterDenominator << ' ' << now.samplePosition << ' ' << now.tickPosition;
    s_State = text.str();
}

int32_t Render(RTASRender& block) {
    for (std::size_t channel = 0; channel < s_Line.size(); ++channel) {
        auto& line = s_Line[channel];
        std::copy_n(line.begin(), block.numSamples, block.outputs[channel]);
        std::copy(line.begin() + block.numSamples, line.end(), line.begin());
        std::copy_n(block.inputs[channel], block.numSamples, line.end() - block.numSamples);
    }
    block.midiOutCount = std::min(block.midiInCount, block.midiOutRoom);
    std::copy_n(block.midiIn, block.midiOutCount, block.midiOut);
    KeepTransport(*block.transport);
    return RTAS_OK;
}

// The header's fields that a host reads, and the text.
int32_t GetChunk(RTASChunk& chunk) {
    chunk.recordSize = static_cast<int32_t>(s_HeaderSize + s_State.size());
    if (!chunk.record)
        return RTAS_OK;
    char* record = static_cast<char*>(chunk.record);
    std::memcpy(record, &chunk.recordSize, 4);
    std::memcpy(record + 20, &s_Code, 4);
    s_State.copy(record + s_HeaderSize, s_State.size());
    return RTAS_OK;
}

} // namespace

FAKE_EXPORT int32_t NewMachOPlugIn(void*) {
    return s_Kind == Start ? -7003 : 0;
}

FAKE_EXPORT int32_t CloseMachOPlugIn() {
    return 0;
}

FAKE_EXPORT int32_t Dispatcher(int32_t version, int32_t operation, void* argument) {
    if (s_Kind == Version || version != RTAS_DISPATCHER_VERSION)
        return RTAS_WRONG_VERSION;
    switch (operation) {
    case RTAS_GET_GROUP_INFO:
    case RTAS_DELETE_PROCESS:
        return RTAS_OK;
    case RTAS_NEW_PROCESS:
        s_Line = {};
        return RTAS_OK;
    case RTAS_GET_DELAY:
        static_cast<RTASProcessCall*>(argument)->value = s_Delay;
        return RTAS_OK;
    case RTAS_RENDER:
        return Render(*static_cast<RTASRender*>(argument));
    case RTAS_GET_CHUNK_CODE:
        static_cast<RTASChunk*>(argument)->code = s_Code;
        return static_cast<RTASChunk*>(argument)->index == 0 ? RTAS_OK : RTAS_WRONG_ARGUMENT;
    case RTAS_GET_CHUNK_SIZE:
    case RTAS_GET_CHUNK:
        return GetChunk(*static_cast<RTASChunk*>(argument));
    default:
        return RTAS_UNKNOWN_OPERATION;
    }
}

#if FAKE_COMPLETE
FAKE_EXPORT int32_t CDSPDoHostCommand(int32_t, void*) {
    return RTAS_UNKNOWN_OPERATION;
}
#endif
