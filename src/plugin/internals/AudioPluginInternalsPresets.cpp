// The lists of presets and the current one.
#include "plugin/interfaces/AudioPluginDataPath.h"
#include "plugin/interfaces/StaticSettings.h"
#include "plugin/internals/AudioPluginInternalsBase.h"
#include "serialization/XmlDataObject.h"

#include <filesystem>
#include <system_error>

namespace Lathe::Audio::Plugin {

namespace {

// Empty for a user without folders.
std::filesystem::path GetDefaultPresetFile(const IStaticSettings& settings) {
    const std::filesystem::path folder(settings.GetDataPath().GetUserPresetsFolder());
    return folder.empty() ? folder : folder / "Default.preset";
}

} // namespace

void CAudioPluginInternalsBase::Refresh() {
    const Core::CAutoLock lock(m_PresetLock);
    m_PresetLists.Refresh();
}

char* CAudioPluginInternalsBase::GetCurrentPresetName() const {
    const Core::CAutoLock lock(m_PresetLock);
    return Core::NewText(m_ProgramName.GetText());
}

void CAudioPluginInternalsBase::PreviousPreset() {
    ApplyPreset(-1);
}

void CAudioPluginInternalsBase::NextPreset() {
    ApplyPreset(1);
}

void CAudioPluginInternalsBase::ApplyPreset(int step) {
    std::unique_ptr<IPreset> preset;
    {
        const Core::CAutoLock lock(m_PresetLock);
        m_CurrentPreset = m_PresetLists.WrapIndex(m_CurrentPreset + step);
        if (const IPreset* found = m_PresetLists.FindByIndex(m_CurrentPreset))
            preset.reset(found->Clone());
    }
    // Without the lock: applying raises events, and their handlers ask for the name.
    if (preset)
        preset->Apply();
}

bool CAudioPluginInternalsBase::ApplyDefaultPreset() {
    std::unique_ptr<IPreset> preset;
    {
        const Core::CAutoLock lock(m_PresetLock);
        if (const IPreset* found = m_PresetLists.GetDefaultPreset())
            preset.reset(found->Clone());
    }
    if (!preset)
        return false;
    preset->Apply();
    return true;
}

void CAudioPluginInternalsBase::SetCurrentPreset(int index, const char* name) {
    {
        const Core::CAutoLock lock(m_PresetLock);
        m_CurrentPreset = index;
        m_ProgramName = name;
    }
    m_PresetsChanged.Notify();
}

void CAudioPluginInternalsBase::SetProgramName(const char* name) {
    const Core::CAutoLock lock(m_PresetLock);
    m_ProgramName = name;
}

bool CAudioPluginInternalsBase::LoadPreset(const char* path) {
    Serialization::CXmlDataObject document("Preset");
    return document.Load(path) && DeSerialize(document);
}

bool CAudioPluginInternalsBase::SavePreset(const char* path) {
    // The file holds its own name, whatever the preset was called before.
    SetProgramName(path ? MakePresetName(path).c_str() : nullptr);
    Serialization::CXmlDataObject document("Preset");
    const bool saved = Serialize(document) && document.Save(path);
    Refresh();
    m_PresetsChanged.Notify();
    return saved;
}

bool CAudioPluginInternalsBase::SaveAsDefault() {
    const std::filesystem::path file = GetDefaultPresetFile(m_StaticSettings);
    return !file.empty() && SavePreset(file.c_str());
}

void CAudioPluginInternalsBase::ResetDefault() {
    std::error_code ignored;
    std::filesystem::remove(GetDefaultPresetFile(m_StaticSettings), ignored);
    Refresh();
}

} // namespace Lathe::Audio::Plugin
