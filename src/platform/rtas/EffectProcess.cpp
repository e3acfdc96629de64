#include "platform/rtas/EffectProcess.h"

namespace {

// The stream of a block for which the host gave no events.
constexpr RTASMIDIEvent NoEvents{};

} // namespace

void CEffectProcessMIDI::ConnectMIDI(CEffectMIDINode* input,
                                     CEffectMIDIRTASBufferedOutputNode* output) {
    m_MIDIInput = input;
    m_MIDIOutput = output;
}

long CEffectProcessMIDI::CloseMIDI() {
    m_MIDIInput = nullptr;
    m_MIDIOutput = nullptr;
    return 0;
}

void CEffectProcessMIDI::BeginBlock(const RTASRender& render) {
    m_Transport.Attach(render.transport, GetSampleRate());
    if (m_MIDIInput)
        m_MIDIInput->AttachStream(render.midiIn ? render.midiIn : &NoEvents, render.midiInCount);
}

void CEffectProcessMIDI::EndBlock(RTASRender& render) {
    m_Transport.Attach(nullptr, GetSampleRate());
    if (m_MIDIInput)
        m_MIDIInput->AttachStream(nullptr, 0);
    render.midiOutCount = m_MIDIOutput ? m_MIDIOutput->Take(render.midiOut, render.midiOutRoom) : 0;
}
