// Where the files of the plug-in lie.
#pragma once

namespace Lathe::Audio::Plugin {

// Absolute paths without a slash at the end, worked out once: they stay valid as long as the
// object. A path is empty where there is no such place.
class IAudioPluginDataPath {
public:
    virtual const char* GetModelFile() const = 0;
    virtual const char* GetSharedModelFile() const = 0;
    virtual const char* GetGlobalModelFile() const = 0;
    virtual const char* GetManualFile() const = 0;
    virtual const char* GetAboutFile() const = 0;
    virtual const char* GetFactoryPresetsFolder() const = 0;
    virtual const char* GetDefaultSkinFile() const = 0;
    virtual const char* GetLegalFolder() const = 0;
    virtual const char* GetPreferencesFile() const = 0;
    virtual const char* GetSettingsFolder() const = 0;
    virtual const char* GetUserDataFolder() const = 0;
    virtual const char* GetUserPresetsFolder() const = 0;
    virtual ~IAudioPluginDataPath() = default;
};

} // namespace Lathe::Audio::Plugin
