// Instances that make audio, in the host's time or beside it, and with MIDI.
#pragma once

#include "platform/rtas/HostTransport.h"
#include "platform/rtas/MIDINode.h"
#include "platform/rtas/Process.h"

class CEffectProcess : public virtual CProcess {};

// Offline.
class CEffectProcessAS : public virtual CEffectProcess {};

// In the host's time.
class CEffectProcessRTAS : public virtual CEffectProcessAS {
public:
    // One block on the host's audio thread, with as many buffers as the host connects, which may be
    // the same for input and output.
    virtual void RenderAudio(float** inputs, float** outputs, int numSamples) LATHE_REALTIME = 0;
};

class CEffectProcessMIDI : public virtual CEffectProcess {
public:
    // The host's time line; it answers during blocks. Stays the library's.
    CHostTransport& GetHostTransport() { return m_Transport; }
    // The nodes stay the plug-in's, which closes the connection before it deletes them.
    void ConnectMIDI(CEffectMIDINode* input, CEffectMIDIRTASBufferedOutputNode* output);
    // 0 on success.
    long CloseMIDI();

    // The library's side, around a block. Between them a created input node has a stream, an empty
    // one if the host gave nothing.
    void BeginBlock(const RTASRender& render) LATHE_REALTIME;
    void EndBlock(RTASRender& render) LATHE_REALTIME;

private:
    CBlockTransport m_Transport;
    CEffectMIDINode* m_MIDIInput = nullptr;
    CEffectMIDIRTASBufferedOutputNode* m_MIDIOutput = nullptr;
};
