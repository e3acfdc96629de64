// What the options of a render mean, read and checked before any of it is done.
#pragma once

#include "cairn-host/AudioWriter.h"
#include "cairn-host/AutomationFile.h"
#include "cairn-host/MidiFile.h"
#include "cairn-host/StateFile.h"

#include <optional>

namespace CairnHost {

struct SRenderOptions;

struct SRenderPlan {
    std::vector<int> m_BlockSizes;
    std::optional<ESubtype> m_Subtype;
    SMeter m_Meter;
    std::vector<SSetting> m_Settings;
    std::vector<SAutomationEvent> m_Automation;
    // Each the argument of a command.
    std::vector<std::string> m_MidiMaps;
    std::vector<SMidiEvent> m_Midi;
    std::vector<SChunk> m_State;
};

TResult<SRenderPlan> MakeRenderPlan(const SRenderOptions& options, const CParameterTable& table);

} // namespace CairnHost
