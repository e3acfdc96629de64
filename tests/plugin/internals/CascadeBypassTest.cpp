// Proves that an equaliser that goes in and out of the bypass gives the same bits, whichever
// version of its cascade runs.
#include "dsp/FilterTestSupport.h"
#include "dsp/PluginsFilters/DualCairnEQ.h"
#include "dsp/kernel/CascadeVersions.h"
#include "plugin/internals/FilterBypassManager.h"

#include <bit>
#include <cstdint>

namespace Lathe::Audio::Plugin {

using namespace DSP::Testing;

namespace {

// Noise and silence in blocks of any size, in place, while settings and bypass change. Each call
// draws the same.
std::vector<std::uint32_t> RunAmidBypasses(const DSP::Kernel::SCascadeVersion* version) {
    const DSP::Kernel::SCascadeVersion* const before = DSP::Kernel::GetCascadeVersion();
    DSP::Kernel::SetCascadeVersion(version);
    CRandom random;
    const auto chance = [&](double share) { return random.Between(0.0, 1.0) < share; };
    PluginsFilters::CDualCairnEQ filter;
    CRig rig(filter, 48000.0, 400);
    CFilterBypassManager manager;
    manager.Init(&filter, 48000.0, 400);
    std::vector<std::uint32_t> bits;
    for (int i = 0; i < 300; ++i) {
        if (chance(0.3))
            manager.SetBypass(chance(0.5));
        if (chance(0.3))
            rig.Set({random.Between(-12.0, 12.0)}, static_cast<int>(random.Between(1.0, 13.0)));
        CProcessIO io;
        io.m_SamplesCount = static_cast<int>(random.Between(1.0, 400.0));
        CBuffers streams(random.Noise(2, io.m_SamplesCount));
        io.m_pOutputs = &streams;
        if (chance(0.2)) {
            manager.ProcessSilence(io);
        } else {
            io.m_pInputs = &streams;
            manager.Process(io);
        }
        for (const CSignal& signal : streams.Read())
            for (const float sample : signal)
                bits.push_back(std::bit_cast<std::uint32_t>(sample));
    }
    DSP::Kernel::SetCascadeVersion(before);
    return bits;
}

} // namespace

TEST(CascadeBypass, GivesTheBitsOfTheStages) {
    const std::vector<std::uint32_t> expected = RunAmidBypasses(nullptr);
    for (const DSP::Kernel::SCascadeVersion& version : DSP::Kernel::GetCascadeVersions()) {
        if (version.m_IsSupported) {
            EXPECT_TRUE(RunAmidBypasses(&version) == expected) << version.m_Name;
        }
    }
}

} // namespace Lathe::Audio::Plugin
