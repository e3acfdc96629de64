// Standard MIDI files: their short messages with the times at which they are due, and back.
#pragma once

#include "cairn-host/Result.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace CairnHost {

struct SMidiEvent {
    // From the start of the file.
    double m_Seconds;
    // Bytes in use of the data.
    int m_Length;
    std::array<std::uint8_t, 4> m_Data;
};

struct SMeter {
    int m_Numerator = 4;
    // A power of two.
    int m_Denominator = 4;
};

// Files of format 0 and 1, by quarter notes with all changes of tempo, or by frames of film. The
// events of all tracks come back in order of time, at one time in order of tracks. What is longer
// than four bytes, such as most system exclusives, stays behind.
TResult<std::vector<SMidiEvent>> ReadMidi(std::string_view bytes);
// The same of a file, which the fault names.
TResult<std::vector<SMidiEvent>> ReadMidiFile(const std::string& path);

// The bytes of a file of format 0 with one tempo, in quarter notes a minute from 4 on, and one
// meter. The events are in order of time.
std::string WriteMidiFile(const std::vector<SMidiEvent>& events, double tempo, SMeter meter);

} // namespace CairnHost
