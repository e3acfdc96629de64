// The ends at which a plug-in takes and gives MIDI.
#pragma once

#include "core/Realtime.h"
#include "core/text/CharString.h"
#include "platform/rtas/Dispatcher.h"

#include <vector>

// The stream of a block is attached by the library before it renders, and gone behind it.
class CEffectMIDINode {
public:
    // In events.
    CEffectMIDINode(const char* name, long bufferSize);
    virtual ~CEffectMIDINode() = default;

    // 0 on success.
    long Create(long channelMask, long count);
    long GetBufferSize() const LATHE_REALTIME { return m_BufferSize; }
    void SetBufferSize(long size) LATHE_REALTIME { m_BufferSize = size; }
    const char* GetName() const { return m_Name.GetText(); }
    bool IsCreated() const { return m_Created; }

    bool HasStream() const LATHE_REALTIME { return m_Events != nullptr; }
    // In events: at least what the node was made with, and what the largest stream yet brought.
    long GetStreamBufferSize() const LATHE_REALTIME { return m_StreamBufferSize; }
    // Takes the stream's events that lie in the block, as many as the buffer holds; 0 on success.
    long FetchEvents(long numSamples) LATHE_REALTIME;
    long GetEventCount() const LATHE_REALTIME { return m_Count; }
    const RTASMIDIEvent& GetEvent(long index) const LATHE_REALTIME { return m_Events[index]; }

    // The library's side. Null takes the stream away; a node that isn't created never has one.
    void AttachStream(const RTASMIDIEvent* events, long count) LATHE_REALTIME;

private:
    Lathe::Core::CCharString m_Name;
    long m_BufferSize;
    bool m_Created = false;
    const RTASMIDIEvent* m_Events = nullptr;
    long m_StreamCount = 0;
    long m_StreamBufferSize = 0;
    long m_Count = 0;
};

class CEffectMIDIOutputNode {
public:
    explicit CEffectMIDIOutputNode(const char* name) : m_Name(name) {}
    virtual ~CEffectMIDIOutputNode() = default;

    // 0 on success.
    virtual long Create(long channelMask) = 0;
    // False when there is no room.
    virtual bool Post(const RTASMIDIEvent& event) LATHE_REALTIME = 0;
    const char* GetName() const { return m_Name.GetText(); }

private:
    Lathe::Core::CCharString m_Name;
};

// Keeps a block's events until the library takes them.
class CEffectMIDIRTASBufferedOutputNode : public CEffectMIDIOutputNode {
public:
    // In events.
    CEffectMIDIRTASBufferedOutputNode(const char* name, long bufferSize);

    long Create(long channelMask) override;
    bool Post(const RTASMIDIEvent& event) LATHE_REALTIME override;

    // The library's side: copies what fits and forgets all; returns how many it copied.
    int Take(RTASMIDIEvent* events, int room) LATHE_REALTIME;

private:
    std::vector<RTASMIDIEvent> m_Events;
    std::size_t m_Count = 0;
    bool m_Created = false;
};
