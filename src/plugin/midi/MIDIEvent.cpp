#include "plugin/midi/MIDIEvent.h"

#include <algorithm>
#include <iterator>

namespace Lathe::Audio::MIDI {

namespace {

// The high nibbles of the status byte, by the number of the kind.
constexpr int Codes[] = {0x80, 0x90, 0xB0, 0xC0};
constexpr int CodeMask = 0xF0;
constexpr int ChannelMask = 0x0F;
constexpr int DataMask = 0x7F;

int GetBits(const IConstMIDIEvent& event, int index, int mask) {
    return index < event.GetLength() ? event.GetData()[index] & mask : -1;
}

void SetBits(IMIDIEvent& event, int index, int mask, int bits) {
    unsigned char& byte = event.GetData()[index];
    byte = static_cast<unsigned char>((byte & ~mask) | (bits & mask));
}

} // namespace

EMIDIEventKind IConstMIDIEvent::GetKind() const {
    const int* code = std::find(std::begin(Codes), std::end(Codes), GetBits(*this, 0, CodeMask));
    return code == std::end(Codes) ? EMIDIEventKind::Other
                                   : static_cast<EMIDIEventKind>(code - Codes);
}

int IConstMIDIEvent::GetChannel() const {
    return GetBits(*this, 0, ChannelMask);
}

int IConstMIDIEvent::GetNumber() const {
    return GetBits(*this, 1, DataMask);
}

int IConstMIDIEvent::GetValue() const {
    return GetBits(*this, 2, DataMask);
}

void IMIDIEvent::SetKind(EMIDIEventKind kind) {
    if (kind >= EMIDIEventKind::NoteOff && kind < EMIDIEventKind::Other)
        SetBits(*this, 0, CodeMask, Codes[static_cast<int>(kind)]);
}

void IMIDIEvent::SetChannel(int channel) {
    SetBits(*this, 0, ChannelMask, channel);
}

// A whole byte: the bit above the seven tells a status byte.
void IMIDIEvent::SetNumber(int number) {
    GetData()[1] = static_cast<unsigned char>(number & DataMask);
}

void IMIDIEvent::SetValue(int value) {
    GetData()[2] = static_cast<unsigned char>(value & DataMask);
}

CMIDIEvent::CMIDIEvent(const unsigned char* data, int length, double timeStamp)
    : m_TimeStamp(timeStamp) {
    CMIDIEvent::SetLength(length);
    std::copy_n(data, m_Length, m_Data);
}

void CMIDIEvent::SetLength(int length) {
    m_Length = std::clamp(length, 0, MaxEventLength);
}

} // namespace Lathe::Audio::MIDI
