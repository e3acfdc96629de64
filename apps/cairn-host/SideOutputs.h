// The files that a render can leave beside the audio: what the plug-in sent, its state and its
// preset.
#pragma once

#include "cairn-host/MidiFile.h"
#include "cairn-host/OutputFile.h"

namespace CairnHost {

class CHostInstance;
struct SRenderOptions;

// Opened before the blocks, so that a bad path costs no time; filled behind them; and committed
// when all else went well. Files that the options don't name are passed over.
class CSideOutputs {
public:
    // The options outlive this.
    explicit CSideOutputs(const SRenderOptions& options) : m_Options(options) {}

    CStatus Open();
    CStatus Fill(CHostInstance& instance, const std::vector<SMidiEvent>& sent, SMeter meter);
    CStatus Commit();

private:
    // For each file that is named, up to the first fault.
    template <class TAction>
    CStatus ForEach(TAction action);

    const SRenderOptions& m_Options;
    COutputFile m_Midi;
    COutputFile m_State;
    COutputFile m_Preset;
};

} // namespace CairnHost
