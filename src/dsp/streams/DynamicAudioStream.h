// A stream that owns its samples: the scratch buffer of the adapters.
#pragma once

#include "core/containers/DynamicVector.h"
#include "dsp/streams/AudioStream.h"

namespace Lathe::Audio::DSP {

// Copying copies the samples, and makes as much room as the other has.
class CDynamicAudioStream : public IAudioStream {
public:
    CDynamicAudioStream() = default;
    CDynamicAudioStream(const CDynamicAudioStream& other) : IAudioStream() { *this = other; }
    CDynamicAudioStream& operator=(const CDynamicAudioStream& other) {
        if (this != &other) {
            m_Samples.SetCount(other.m_Samples.GetCapacity());
            m_Samples = other.m_Samples;
        }
        return *this;
    }

    const float* GetData() const LATHE_REALTIME override { return m_Samples.GetData(); }
    float* GetData() LATHE_REALTIME override { return m_Samples.GetData(); }
    int GetSize() const LATHE_REALTIME override { return m_Samples.GetCount(); }
    int GetStride() const LATHE_REALTIME override { return 1; }

    // The samples are unspecified after a change of size; within the largest size so far it costs
    // nothing, and memory is given back only with force.
    void SetSize(int samples, bool force = false) { m_Samples.SetCount(samples, force); }

private:
    Core::TNCDynamicVector<float, Core::CStepGrowthStrategy> m_Samples;
};

} // namespace Lathe::Audio::DSP
