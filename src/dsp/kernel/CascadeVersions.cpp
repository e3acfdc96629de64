#include "dsp/kernel/CascadeVersions.h"

#include <atomic>

namespace Lathe::Audio::DSP::Kernel {

namespace {

#if defined(__x86_64__)
bool HasAVX2() {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2");
}
#endif

const SCascadeVersion s_Versions[] = {
    {"portable", RunCascadePortable, ComputeSectionPortable, true},
#if defined(__x86_64__)
    {"SSE2", RunCascadeSSE2, ComputeSectionSSE2, true},
    {"AVX2", RunCascadeAVX2, ComputeSectionAVX2, HasAVX2()},
#endif
};

const SCascadeVersion* ChooseVersion() {
    const SCascadeVersion* best = nullptr;
    for (const SCascadeVersion& version : s_Versions) {
        if (version.m_IsSupported)
            best = &version;
    }
    return best;
}

// Null until this source is initialised: filters then run stage by stage, which gives the same.
std::atomic<const SCascadeVersion*> s_Version = ChooseVersion();

} // namespace

std::span<const SCascadeVersion> GetCascadeVersions() {
    return s_Versions;
}

const SCascadeVersion* GetCascadeVersion() {
    return s_Version.load(std::memory_order_relaxed);
}

void SetCascadeVersion(const SCascadeVersion* version) {
    s_Version.store(version, std::memory_order_relaxed);
}

} // namespace Lathe::Audio::DSP::Kernel
