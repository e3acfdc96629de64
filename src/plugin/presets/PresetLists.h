// The presets of the factory and of the user, as they are found.
#pragma once

#include "core/containers/Collection.h"
#include "dsp/LegacyPresets.h"
#include "plugin/interfaces/PresetsManager.h"
#include "plugin/presets/XMLPresetFile.h"

#include <filesystem>
#include <memory>

namespace Lathe::Audio::Plugin {

class IAudioPluginDataPath;
class IPresetOwner;

using CPresetFiles = CoreUtilities::TDynamicCollection<
    CXMLPresetFile, IPreset, IPresets,
    Core::TDynamicVector<CXMLPresetFile, Core::CExpGrowthStrategy, Core::TEqualOperatorCopier>>;

// Appends the preset files of the path to the list, those of its sub-folders before its own, each
// in the order of the file system, and their places in the list to the folder. What doesn't exist
// or can't be read is empty, and so is a folder within itself, as links make it.
void ScanFolder(const std::filesystem::path& path, CPresetFolder& folder, CPresetFiles& list,
                IPresetOwner& owner, int baseIndex);

// Holds no lock: the owner guards it, but for the constructor.
class CPresetLists {
public:
    // The filter's presets are the factory's if it has any, the files of the factory's folder
    // otherwise. The user's are looked for at once.
    CPresetLists(IPresetOwner& owner, const DSP::ILegacyPresets& legacyPresets,
                 const IAudioPluginDataPath& dataPath);
    CPresetLists(const CPresetLists&) = delete;
    CPresetLists& operator=(const CPresetLists&) = delete;

    IPresets& GetPresets() { return *m_Presets; }
    const CPresetFolder& GetFactoryFolder() const { return m_FactoryPresets; }
    IPresets& GetUserPresets() { return m_UserPresetFiles; }
    const CPresetFolder& GetUserFolder() const { return m_UserPresets; }

    // Looks for the user's presets anew, and for the default one. Ends the life of the user's
    // presets that were there.
    void Refresh();
    // Null when there is none.
    IPreset* GetDefaultPreset() const { return m_DefaultPreset; }

    // Of the factory and of the user together.
    int GetCount() const { return m_Presets->GetCount() + m_UserPresetFiles.GetCount(); }
    // Null beyond the lists.
    IPreset* FindByIndex(int globalIndex);
    // Round at the ends: the first behind the last, the last before the first; 0 without presets.
    int WrapIndex(int index) const;

private:
    IPresetOwner& m_Owner;
    std::filesystem::path m_UserFolderPath;
    std::unique_ptr<IPresets> m_Presets;
    CPresetFolder m_FactoryPresets{"Factory Presets"};
    CPresetFiles m_UserPresetFiles;
    CPresetFolder m_UserPresets{"User Presets"};
    IPreset* m_DefaultPreset = nullptr;
};

} // namespace Lathe::Audio::Plugin
