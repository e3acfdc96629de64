// One channel of 32-bit float samples, by pointer and stride, and vectors of channels.
#pragma once

#include "core/Realtime.h"
#include "core/containers/Vector.h"

namespace Lathe::Audio::DSP {

// Sample i is data[i * stride]. Stride 0 is legal: every sample is the same cell, which feeds
// silence and swallows output without a branch in the inner loop.
class IAudioStream {
public:
    // The first sample, or null.
    virtual const float* GetData() const LATHE_REALTIME = 0;
    virtual float* GetData() LATHE_REALTIME = 0;
    // In samples.
    virtual int GetSize() const LATHE_REALTIME = 0;
    // In floats between two samples.
    virtual int GetStride() const LATHE_REALTIME = 0;
    virtual ~IAudioStream() = default;
};

using IConstAudioStreams = Containers::IConstVector<IAudioStream>;
using IAudioStreams = Containers::IVector<IAudioStream>;

// A stream over memory that it may own.
class CAudioStream : public IAudioStream {
public:
    CAudioStream() = default;
    // The offset is in samples of stride 1 before the first sample, the total size in floats. An
    // owned buffer is freed as an array.
    CAudioStream(float* buffer, int offset, int totalSize, int stride, bool owned);
    CAudioStream(CAudioStream&& other) noexcept;
    CAudioStream& operator=(CAudioStream&& other) noexcept;
    CAudioStream(const CAudioStream&) = delete;
    CAudioStream& operator=(const CAudioStream&) = delete;
    ~CAudioStream() override;

    const float* GetData() const LATHE_REALTIME override { return First(); }
    float* GetData() LATHE_REALTIME override { return First(); }
    int GetSize() const LATHE_REALTIME override {
        return m_Stride == 0 ? m_TotalSize : m_TotalSize / m_Stride;
    }
    int GetStride() const LATHE_REALTIME override { return m_Stride; }

    // Points at somebody else's contiguous samples. Only for a stream that owns no buffer.
    void Aim(float* buffer, int samples) LATHE_REALTIME;

private:
    float* First() const LATHE_REALTIME { return m_pBuffer ? m_pBuffer + m_Offset : nullptr; }

    float* m_pBuffer = nullptr;
    int m_Offset = 0;
    int m_TotalSize = 0;
    int m_Stride = 1;
    bool m_Owned = false;
};

// An array of streams. A null array has no streams, whatever the count says.
class CAudioStreams : public IAudioStreams {
public:
    // An owned array is freed with delete[].
    CAudioStreams(CAudioStream* streams, int count, bool owned) LATHE_REALTIME
        : m_Streams(streams),
          m_Count(streams ? count : 0),
          m_Owned(owned) {}
    CAudioStreams(const CAudioStreams&) = delete;
    CAudioStreams& operator=(const CAudioStreams&) = delete;
    ~CAudioStreams() override {
        if (m_Owned)
            delete[] m_Streams;
    }

    int GetCount() const LATHE_REALTIME override { return m_Count; }
    const IAudioStream& GetElement(int index) const LATHE_REALTIME override {
        return m_Streams[index];
    }
    IAudioStream& GetElement(int index) LATHE_REALTIME override { return m_Streams[index]; }

private:
    CAudioStream* m_Streams;
    int m_Count;
    bool m_Owned;
};

// One stream seen as a vector of one; null gives an empty vector.
class CAudioStreamToStreams : public IAudioStreams {
public:
    CAudioStreamToStreams(IAudioStream* stream, bool owned) LATHE_REALTIME : m_Stream(stream),
                                                                             m_Owned(owned) {}
    CAudioStreamToStreams(const CAudioStreamToStreams&) = delete;
    CAudioStreamToStreams& operator=(const CAudioStreamToStreams&) = delete;
    ~CAudioStreamToStreams() override {
        if (m_Owned)
            delete m_Stream;
    }

    int GetCount() const LATHE_REALTIME override { return m_Stream ? 1 : 0; }
    const IAudioStream& GetElement(int) const LATHE_REALTIME override { return *m_Stream; }
    IAudioStream& GetElement(int) LATHE_REALTIME override { return *m_Stream; }

private:
    IAudioStream* m_Stream;
    bool m_Owned;
};

// The same for a stream that is only read, which it never owns.
class CConstAudioStreamToStreams : public IConstAudioStreams {
public:
    explicit CConstAudioStreamToStreams(const IAudioStream* stream) LATHE_REALTIME
        : m_Stream(stream) {}

    int GetCount() const LATHE_REALTIME override { return m_Stream ? 1 : 0; }
    const IAudioStream& GetElement(int) const LATHE_REALTIME override { return *m_Stream; }

private:
    const IAudioStream* m_Stream;
};

} // namespace Lathe::Audio::DSP
