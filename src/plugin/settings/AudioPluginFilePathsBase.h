// The layout of the plug-in's files below three folders, wherever these lie.
#pragma once

#include "plugin/interfaces/AudioPluginDataPath.h"

#include <string>

namespace Lathe::Audio::Plugin {

// Makes the settings folder, the user folder and the user's folders of presets and of skins. One
// that can't be made keeps its path: what is read there is missing, and what is written there
// fails.
class CAudioPluginFilePathsBase : public IAudioPluginDataPath {
public:
    // Absolute, without a slash at the end. An empty one leaves all paths below it empty.
    CAudioPluginFilePathsBase(const std::string& installFolder, const std::string& settingsFolder,
                              const std::string& userFolder);

    const char* GetModelFile() const override { return m_ModelFile.c_str(); }
    const char* GetSharedModelFile() const override { return m_SharedModelFile.c_str(); }
    const char* GetGlobalModelFile() const override { return m_GlobalModelFile.c_str(); }
    const char* GetManualFile() const override { return m_ManualFile.c_str(); }
    const char* GetAboutFile() const override { return m_AboutFile.c_str(); }
    const char* GetFactoryPresetsFolder() const override { return m_FactoryPresetsFolder.c_str(); }
    const char* GetDefaultSkinFile() const override { return m_DefaultSkinFile.c_str(); }
    const char* GetLegalFolder() const override { return m_LegalFolder.c_str(); }
    const char* GetPreferencesFile() const override { return m_PreferencesFile.c_str(); }
    const char* GetSettingsFolder() const override { return m_SettingsFolder.c_str(); }
    const char* GetUserDataFolder() const override { return m_UserDataFolder.c_str(); }
    const char* GetUserPresetsFolder() const override { return m_UserPresetsFolder.c_str(); }

    // What skins are stored relative to.
    const char* GetInstallFolder() const { return m_InstallFolder.c_str(); }

private:
    void CreateFolders() const;

    std::string m_InstallFolder;
    std::string m_ModelFile;
    std::string m_SharedModelFile;
    std::string m_GlobalModelFile;
    std::string m_ManualFile;
    std::string m_AboutFile;
    std::string m_FactoryPresetsFolder;
    std::string m_DefaultSkinFile;
    std::string m_LegalFolder;
    std::string m_PreferencesFile;
    std::string m_SettingsFolder;
    std::string m_UserDataFolder;
    std::string m_UserPresetsFolder;
    std::string m_UserSkinsFolder;
};

} // namespace Lathe::Audio::Plugin
