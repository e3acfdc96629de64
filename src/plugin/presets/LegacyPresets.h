// The presets that a filter names of its own, as presets of the instance.
#pragma once

#include "core/text/CharString.h"
#include "dsp/LegacyPresets.h"
#include "plugin/interfaces/PresetsManager.h"

#include <cstddef>
#include <vector>

namespace Lathe::Audio::Plugin {

class IPresetOwner;

class CAudioPluginLegacyPreset : public IPreset {
public:
    // The index is the global one. Copies the preset: the filter may die first.
    CAudioPluginLegacyPreset(IPresetOwner& owner, int index, const DSP::ILegacyPreset& preset);

    const char* GetName() const override { return m_Name.GetText(); }
    // Switches Bypass off and sets the parameters as the preset's kind tells. Uses the random
    // numbers of the whole process.
    void Apply() override;
    CAudioPluginLegacyPreset* Clone() const override { return new CAudioPluginLegacyPreset(*this); }

private:
    IPresetOwner* m_Owner;
    int m_Index;
    Core::CCharString m_Name;
    int m_Kind;
    std::vector<double> m_Values;
};

// One for each of the filter's presets. They count from 0.
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
