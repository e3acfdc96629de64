#include "cairn-host/SideOutputs.h"

#include "cairn-host/PresetStore.h"
#include "cairn-host/Render.h"
#include "cairn-host/StateFile.h"

namespace CairnHost {

template <class TAction>
CStatus CSideOutputs::ForEach(TAction action) {
    for (const auto& [file, path] : {std::pair{&m_Midi, &m_Options.m_MidiOut},
                                     {&m_State, &m_Options.m_StateOut},
                                     {&m_Preset, &m_Options.m_SavePreset}}) {
        if (path->empty())
            continue;
        if (CStatus status = action(*file, *path); !status)
            return status;
    }
    return {};
}

CStatus CSideOutputs::Open() {
    return ForEach([](COutputFile& file, const std::string& path) { return file.Open(path); });
}

CStatus CSideOutputs::Fill(CHostInstance& instance, const std::vector<SMidiEvent>& sent,
                           SMeter meter) {
    return ForEach([&](COutputFile& file, const std::string& path) -> CStatus {
        const TResult<std::string> bytes = &file == &m_Midi
                                               ? WriteMidiFile(sent, m_Options.m_Tempo, meter)
                                           : &file == &m_State ? StoreState(instance)
                                                               : StorePreset(instance, path);
        if (!bytes)
            return bytes.GetFault();
        return file.Write(bytes->data(), bytes->size()) ? CStatus() : file.GetFault();
    });
}

CStatus CSideOutputs::Commit() {
    return ForEach([](COutputFile& file, const std::string&) { return file.Commit(); });
}

} // namespace CairnHost
