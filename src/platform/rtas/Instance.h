// The instances that a host has made, and the handles by which it names them.
#pragma once

#include "core/Realtime.h"
#include "platform/rtas/Dispatcher.h"

#include <memory>
#include <string>
#include <vector>

class CEffectProcessMIDI;
class CEffectProcessRTAS;
class CProcess;
struct SProcessSetup;

namespace RTASLibrary {

// A process, seen from all of its sides, with what its host gave and what it lends to the host.
class CInstance {
public:
    // Sets the process up and runs it to where it can render. Throws what the process throws.
    CInstance(std::unique_ptr<CProcess> process, const SProcessSetup& setup);
    ~CInstance();

    CProcess& GetProcess() const LATHE_REALTIME { return *m_Process; }
    // False, and nothing done, when a buffer is null.
    bool AimBuffers(const RTASRender& render) LATHE_REALTIME;
    // One block, with the buffers that were aimed.
    void RenderBlock(RTASRender& render) LATHE_REALTIME;

    // The text, which stays until the next is lent.
    const char* Lend(std::string text);

private:
    std::unique_ptr<CProcess> m_Process;
    CEffectProcessRTAS& m_Effect;
    // Null where the process takes no MIDI.
    CEffectProcessMIDI* m_MIDI;
    std::vector<float*> m_Inputs;
    std::vector<float*> m_Outputs;
    std::string m_Lent;
};

// Null when there is no room for another.
RTASProcess* AddInstance(std::unique_ptr<CInstance> instance);
// Null for whatever isn't the handle of a living instance. Doesn't wait.
CInstance* FindInstance(const RTASProcess* process) LATHE_REALTIME;
void DeleteInstance(RTASProcess* process);
void DeleteAllInstances();

} // namespace RTASLibrary
