#include "dsp/streams/AudioStream.h"

#include <utility>

namespace Lathe::Audio::DSP {

CAudioStream::CAudioStream(float* buffer, int offset, int totalSize, int stride, bool owned)
    : m_pBuffer(buffer),
      m_Offset(offset),
      m_TotalSize(totalSize),
      m_Stride(stride),
      m_Owned(owned) {}

CAudioStream::CAudioStream(CAudioStream&& other) noexcept
    : m_pBuffer(other.m_pBuffer),
      m_Offset(other.m_Offset),
      m_TotalSize(other.m_TotalSize),
      m_Stride(other.m_Stride),
      m_Owned(std::exchange(other.m_Owned, false)) {}

CAudioStream& CAudioStream::operator=(CAudioStream&& other) noexcept {
    std::swap(m_pBuffer, other.m_pBuffer);
    std::swap(m_Offset, other.m_Offset);
    std::swap(m_TotalSize, other.m_TotalSize);
    std::swap(m_Stride, other.m_Stride);
    std::swap(m_Owned, other.m_Owned);
    return *this;
}

CAudioStream::~CAudioStream() {
    if (m_Owned)
        delete[] m_pBuffer;
}

void CAudioStream::Aim(float* buffer, int samples) {
    m_pBuffer = buffer;
    m_Offset = 0;
    m_TotalSize = samples;
    m_Stride = 1;
}

} // namespace Lathe::Audio::DSP
