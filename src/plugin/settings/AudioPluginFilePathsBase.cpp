#include "plugin/settings/AudioPluginFilePathsBase.h"

#include "platform/UserFolders.h"

namespace Lathe::Audio::Plugin {

namespace {

std::string Below(const std::string& folder, const char* path) {
    return folder.empty() ? folder : folder + "/" + path;
}

} // namespace

CAudioPluginFilePathsBase::CAudioPluginFilePathsBase(const std::string& installFolder,
                                                     const std::string& settingsFolder,
                                                     const std::string& userFolder)
    : m_InstallFolder(installFolder),
      m_ModelFile(Below(installFolder, "Model/model.model")),
      m_SharedModelFile(Below(installFolder, "Model/shared.model")),
      m_GlobalModelFile(Below(installFolder, "Model/global.model")),
      m_ManualFile(Below(installFolder, "manual.pdf")),
      m_AboutFile(Below(installFolder, "About/about.xml")),
      m_FactoryPresetsFolder(Below(installFolder, "Presets")),
      m_DefaultSkinFile(Below(installFolder, "Skins/default.xml")),
      m_LegalFolder(Below(installFolder, "Legal")),
      m_PreferencesFile(Below(settingsFolder, "global.pref")),
      m_SettingsFolder(settingsFolder),
      m_UserDataFolder(userFolder),
      m_UserPresetsFolder(Below(userFolder, "Presets")),
      m_UserSkinsFolder(Below(userFolder, "Skins")) {
    CreateFolders();
}

void CAudioPluginFilePathsBase::CreateFolders() const {
    if (!m_SettingsFolder.empty())
        System::CreateFolder(m_SettingsFolder, System::EFolderAccess::Owner);
    // Presets too: there the user's default is saved, and that is where a user looks for the place.
    for (const std::string& folder : {m_UserPresetsFolder, m_UserSkinsFolder}) {
        if (!folder.empty())
            System::CreateFolder(folder, System::EFolderAccess::Everyone);
    }
}

} // namespace Lathe::Audio::Plugin
