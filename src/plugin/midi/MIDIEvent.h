// A short MIDI message with the moment at which it counts.
#pragma once

#include "core/Realtime.h"

namespace Lathe::Audio::MIDI {

// Other is also what an empty message is.
enum class EMIDIEventKind : int {
    NoteOff = 0,
    NoteOn = 1,
    ControlChange = 2,
    ProgramChange = 3,
    Other = 4,
};

inline constexpr int MaxEventLength = 4;

class IConstMIDIEvent {
public:
    // Room for MaxEventLength bytes, of which the message has the first ones.
    virtual const unsigned char* GetData() const LATHE_REALTIME = 0;
    // In bytes.
    virtual int GetLength() const LATHE_REALTIME = 0;
    // In samples from the start of the block.
    virtual double GetTimeStamp() const LATHE_REALTIME = 0;
    virtual ~IConstMIDIEvent() = default;

    EMIDIEventKind GetKind() const LATHE_REALTIME;
    // 0 to 15. This and the two below are -1 when the message is too short.
    int GetChannel() const LATHE_REALTIME;
    // The second byte, 0 to 127.
    int GetNumber() const LATHE_REALTIME;
    // The third byte, 0 to 127.
    int GetValue() const LATHE_REALTIME;
};

// The setters of the message's parts leave its length alone, and take the bits that fit.
class IMIDIEvent : public virtual IConstMIDIEvent {
public:
    using IConstMIDIEvent::GetData;
    virtual unsigned char* GetData() LATHE_REALTIME = 0;
    // Brought to 0 to MaxEventLength.
    virtual void SetLength(int length) LATHE_REALTIME = 0;
    virtual void SetTimeStamp(double timeStamp) LATHE_REALTIME = 0;

    // Keeps the channel. Other has no code, and changes nothing.
    void SetKind(EMIDIEventKind kind) LATHE_REALTIME;
    void SetChannel(int channel) LATHE_REALTIME;
    void SetNumber(int number) LATHE_REALTIME;
    void SetValue(int value) LATHE_REALTIME;
};

class CMIDIEvent : public IMIDIEvent {
public:
    CMIDIEvent() = default;
    // Takes as many bytes as there is room for.
    CMIDIEvent(const unsigned char* data, int length, double timeStamp = 0.0) LATHE_REALTIME;

    const unsigned char* GetData() const LATHE_REALTIME override { return m_Data; }
    int GetLength() const LATHE_REALTIME override { return m_Length; }
    double GetTimeStamp() const LATHE_REALTIME override { return m_TimeStamp; }
    unsigned char* GetData() LATHE_REALTIME override { return m_Data; }
    void SetLength(int length) LATHE_REALTIME override;
    void SetTimeStamp(double timeStamp) LATHE_REALTIME override { m_TimeStamp = timeStamp; }

private:
    unsigned char m_Data[MaxEventLength] = {};
    int m_Length = 3;
    double m_TimeStamp = 0.0;
};

} // namespace Lathe::Audio::MIDI
