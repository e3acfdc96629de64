// A file through the plug-in into a file, in memory that doesn't grow with the file.
#pragma once

#include "cairn-host/Progress.h"
#include "cairn-host/Result.h"

#include <string>
#include <vector>

namespace CairnHost {

// As given on the command line; paths are empty for none.
struct SRenderOptions {
    // Empty for the one that comes with the program.
    std::string m_Module;
    std::string m_Input;
    std::string m_Output;
    // "NAME=VALUE", in force from the first frame.
    std::vector<std::string> m_Settings;
    std::string m_Automation;
    std::string m_Midi;
    // As ReadMidiMap takes them.
    std::vector<std::string> m_MidiMaps;
    std::string m_MidiOut;
    std::string m_Preset;
    std::string m_SavePreset;
    std::string m_StateIn;
    std::string m_StateOut;
    // Of the time line that the plug-in sees: quarter notes a minute, and "N/M".
    double m_Tempo = 120.0;
    std::string m_Meter = "4/4";
    // Sizes separated by commas, taken in turn, again and again.
    std::string m_BlockSizes = "512";
    // Silence to render behind the end of the input.
    double m_TailSeconds = 0.0;
    // Empty for the best that the output's format holds.
    std::string m_Subtype;
};

struct SRenderReport {
    // What the user should know though nothing failed; each is one line.
    std::vector<std::string> m_Notes;
};

// The plug-in takes the state first, then the preset, the settings and the controller maps; then
// the blocks, with the automation and MIDI that is due in each. What the plug-in sent, its preset
// and its state are those behind the last block. All files appear at the end, or none does.
TResult<SRenderReport> Render(const SRenderOptions& options, CProgress& progress);

} // namespace CairnHost
