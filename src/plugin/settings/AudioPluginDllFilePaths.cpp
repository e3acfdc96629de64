#include "plugin/settings/AudioPluginDllFilePaths.h"

#include "platform/ModulePath.h"
#include "platform/UserFolders.h"
#include "plugin/interfaces/PackageInfo.h"

#include <filesystem>
#include <initializer_list>

namespace Lathe::Audio::Plugin {

namespace {

constexpr const char* DefaultMaker = "Marrow Sound";

std::string GetName(const std::string& modulePath) {
    return std::filesystem::path(modulePath).stem().string();
}

std::string GetMaker(const IConstPackageInfo* package) {
    return package ? package->GetMaker() : DefaultMaker;
}

// Empty when the base is. A level without a name is left out.
std::string AppendLevels(std::string base, std::initializer_list<std::string> levels) {
    if (base.empty())
        return base;
    for (const std::string& level : levels)
        if (!level.empty())
            base += "/" + level;
    return base;
}

std::string MakeInstallFolder(const std::string& modulePath) {
    const std::string name = GetName(modulePath);
    if (name.empty())
        return name;
    return (std::filesystem::path(modulePath).parent_path() / (name + " data")).string();
}

std::string MakeSettingsFolder(const IConstPackageInfo* package, const std::string& name) {
    if (name.empty())
        return name;
    return AppendLevels(System::GetUserPreferencesFolder(), {GetMaker(package), name});
}

std::string MakeUserFolder(const IConstPackageInfo* package, const std::string& name) {
    const std::string product = package ? package->GetProduct() : name;
    if (product.empty())
        return product;
    return AppendLevels(System::GetUserDocumentsFolder(),
                        {GetMaker(package), product, package ? package->GetVariant() : ""});
}

// An address in this module.
void InModule() {}

} // namespace

CAudioPluginDllFilePaths::CAudioPluginDllFilePaths(const IConstPackageInfo* package)
    : CAudioPluginDllFilePaths(package,
                               System::GetModulePath(reinterpret_cast<const void*>(&InModule))) {}

CAudioPluginDllFilePaths::CAudioPluginDllFilePaths(const IConstPackageInfo* package,
                                                   const std::string& modulePath)
    : CAudioPluginFilePathsBase(MakeInstallFolder(modulePath),
                                MakeSettingsFolder(package, GetName(modulePath)),
                                MakeUserFolder(package, GetName(modulePath))) {}

} // namespace Lathe::Audio::Plugin
