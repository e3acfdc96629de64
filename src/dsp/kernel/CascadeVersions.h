// The versions of the cascade, of which one is chosen when the module is loaded.
#pragma once

#include "core/Realtime.h"
#include "dsp/kernel/CascadeLanes.h"

#include <span>

namespace Lathe::Audio::DSP::Kernel {

struct SCascadeVersion {
    const char* m_Name;
    bool (*m_Run)(const SCascadeGroups& groups);
    void (*m_ComputeSection)(const SSectionFrames& section);
    // Whether this processor can run it.
    bool m_IsSupported;
};

// The best last.
std::span<const SCascadeVersion> GetCascadeVersions();

// The one in use, which is the best that is supported; null where filters run stage by stage.
const SCascadeVersion* GetCascadeVersion() LATHE_REALTIME;
// For tests and measurements, for the blocks to come of all filters; null for stage by stage.
void SetCascadeVersion(const SCascadeVersion* version);

} // namespace Lathe::Audio::DSP::Kernel
