#include "platform/rtas/MIDINode.h"

#include <algorithm>

CEffectMIDINode::CEffectMIDINode(const char* name, long bufferSize)
    : m_Name(name), m_BufferSize(bufferSize), m_StreamBufferSize(bufferSize) {}

long CEffectMIDINode::Create(long channelMask, long count) {
    m_Created = channelMask != 0 && count > 0;
    return m_Created ? 0 : RTAS_WRONG_ARGUMENT;
}

void CEffectMIDINode::AttachStream(const RTASMIDIEvent* events, long count) {
    m_Events = m_Created ? events : nullptr;
    m_StreamCount = m_Events ? count : 0;
    m_StreamBufferSize = std::max(m_StreamBufferSize, m_StreamCount);
    m_Count = 0;
}

long CEffectMIDINode::FetchEvents(long numSamples) {
    m_Count = 0;
    if (!HasStream())
        return RTAS_WRONG_ARGUMENT;
    const long most = std::min(m_StreamCount, m_BufferSize);
    while (m_Count < most && m_Events[m_Count].offset < numSamples)
        ++m_Count;
    return 0;
}

CEffectMIDIRTASBufferedOutputNode::CEffectMIDIRTASBufferedOutputNode(const char* name,
                                                                     long bufferSize)
    : CEffectMIDIOutputNode(name), m_Events(static_cast<std::size_t>(std::max(bufferSize, 0L))) {}

long CEffectMIDIRTASBufferedOutputNode::Create(long channelMask) {
    m_Created = channelMask != 0;
    return m_Created ? 0 : RTAS_WRONG_ARGUMENT;
}

bool CEffectMIDIRTASBufferedOutputNode::Post(const RTASMIDIEvent& event) {
    if (!m_Created || m_Count == m_Events.size())
        return false;
    m_Events[m_Count++] = event;
    return true;
}

int CEffectMIDIRTASBufferedOutputNode::Take(RTASMIDIEvent* events, int room) {
    const int count = static_cast<int>(
        std::min<std::size_t>(m_Count, static_cast<std::size_t>(std::max(room, 0))));
    std::copy_n(m_Events.begin(), count, events);
    m_Count = 0;
    return count;
}
