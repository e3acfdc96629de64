// Bytes as a MIDI file for the host program.
#include "cairn-host/MidiFile.h"

#include <cmath>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto events = CairnHost::ReadMidi({reinterpret_cast<const char*>(data), size});
    if (!events)
        return 0;
    double last = 0.0;
    for (const CairnHost::SMidiEvent& event : *events) {
        const bool isSound = event.m_Seconds >= last && std::isfinite(event.m_Seconds) &&
                             event.m_Length >= 1 && event.m_Length <= 4;
        if (!isSound)
            std::abort();
        last = event.m_Seconds;
    }
    return 0;
}
