#include "plugin/settings/AudioPluginStaticSettings.h"

#include "plugin/settings/AudioPluginDllFilePaths.h"

namespace Lathe::Audio::Plugin {

IStaticSettings& GetStaticSettings(const IConstPackageInfo* package) {
    static TAudioPluginConfig<CAudioPluginDllFilePaths> s_Settings(package);
    return s_Settings;
}

} // namespace Lathe::Audio::Plugin
