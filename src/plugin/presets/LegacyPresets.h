// The presets that a filter names of its own, as presets of the instance.
#pragma once

#include "dsp/LegacyPresets.h"
#include "plugin/interfaces/PresetsManager.h"

#include <cstddef>
#include <vector>

namespace Lathe::Audio::Plugin {

class IPresetOwner;

class CAudioPluginLegacyPreset : public IPreset {
public:
    // The index is the global one. Name and values stay the filter's.
    CAudioPluginLegacyPreset(IPresetOwner& owner, int index, const DSP::ILegacyPreset& preset)
        : m_Owner(&owner), m_Index(index), m_Preset(&preset) {}

    const char* GetName() const override { return m_Preset->GetName(); }
    // Switches Bypass off and sets the parameters as the preset's kind tells. Uses the random
    // numbers of the whole process.
    void Apply() override;

private:
    IPresetOwner* m_Owner;
    int m_Index;
    const DSP::ILegacyPreset* m_Preset;
};

// One for each of the filter's presets, which must live as long. They count from 0.
class CAudioPluginLegacyPresets : public IPresets {
public:
    CAudioPluginLegacyPresets(IPresetOwner& owner, const DSP::ILegacyPresets& presets);

    int GetCount() const LATHE_REALTIME override { return static_cast<int>(m_Presets.size()); }
    const IPreset& GetElement(int index) const LATHE_REALTIME override {
        return m_Presets[static_cast<std::size_t>(index)];
    }
    IPreset& GetElement(int index) LATHE_REALTIME override {
        return m_Presets[static_cast<std::size_t>(index)];
    }

private:
    std::vector<CAudioPluginLegacyPreset> m_Presets;
};

} // namespace Lathe::Audio::Plugin
