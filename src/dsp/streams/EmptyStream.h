// Silent inputs of any length, built on the stack.
#pragma once

#include "dsp/streams/AudioStream.h"

namespace Lathe::Audio::DSP {

// One cell of 0.0 read again and again; it can't be written.
class CEmptyStream : public IAudioStream {
public:
    explicit CEmptyStream(int size) LATHE_REALTIME : m_Size(size) {}

    const float* GetData() const LATHE_REALTIME override { return &m_Zero; }
    float* GetData() LATHE_REALTIME override { return nullptr; }
    int GetSize() const LATHE_REALTIME override { return m_Size; }
    int GetStride() const LATHE_REALTIME override { return 0; }

private:
    float m_Zero = 0.0f;
    int m_Size;
};

// Any number of channels, all of them the same silent stream.
class CEmptyStreams : public IConstAudioStreams {
public:
    CEmptyStreams(int size, int channels) LATHE_REALTIME : m_Stream(size), m_Channels(channels) {}

    int GetCount() const LATHE_REALTIME override { return m_Channels; }
    const IAudioStream& GetElement(int) const LATHE_REALTIME override { return m_Stream; }

private:
    CEmptyStream m_Stream;
    int m_Channels;
};

} // namespace Lathe::Audio::DSP
