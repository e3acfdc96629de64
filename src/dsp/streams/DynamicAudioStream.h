// A stream that owns its samples: the scratch buffer of the adapters.
#pragma once

#include "core/containers/DynamicVector.h"
#include "dsp/streams/AudioStream.h"

namespace Lathe::Audio::DSP {

// Copying copies the samples.
class CDynamicAudioStream : public IAudioStream {
public:
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
