// The plug-in's paths follow from module, package and user, and the folders that are its own are
// made.
#include "plugin/settings/AudioPluginDllFilePaths.h"

#include "platform/TemporaryHome.h"
#include "plugin/settings/PackageInfo.h"

#include <iterator>

namespace Lathe::Audio::Plugin {

namespace {

bool IsFolder(const std::string& path) {
    return std::filesystem::is_directory(path);
}

// The paths in the order of the interface; the first eight lie in the install folder.
std::vector<std::string> GetAllPaths(const IAudioPluginDataPath& paths) {
    return {paths.GetModelFile(),       paths.GetSharedModelFile(), paths.GetGlobalModelFile(),
            paths.GetManualFile(),      paths.GetAboutFile(),       paths.GetFactoryPresetsFolder(),
            paths.GetDefaultSkinFile(), paths.GetLegalFolder(),     paths.GetPreferencesFile(),
            paths.GetSettingsFolder(),  paths.GetUserDataFolder(),  paths.GetUserPresetsFolder()};
}

TEST(AudioPluginFilePaths, LieBelowThreeFolders) {
    const CTemporaryHome home;
    const std::string settings = home.In("s/t");
    const std::string user = home.In("u/v");
    const CAudioPluginFilePathsBase paths("/i", settings, user);
    const std::vector<std::string> expected = {"/i/Model/model.model",
                                               "/i/Model/shared.model",
                                               "/i/Model/global.model",
                                               "/i/manual.pdf",
                                               "/i/About/about.xml",
                                               "/i/Presets",
                                               "/i/Skins/default.xml",
                                               "/i/Legal",
                                               settings + "/global.pref",
                                               settings,
                                               user,
                                               user + "/Presets"};
    EXPECT_EQ(GetAllPaths(paths), expected);
    EXPECT_TRUE(IsFolder(settings) && IsFolder(user + "/Skins"));

    const CAudioPluginFilePathsBase nowhere("", "", "");
    EXPECT_EQ(GetAllPaths(nowhere), std::vector<std::string>(expected.size()));
}

TEST(AudioPluginFilePaths, FollowModuleAndPackage) {
    const CTemporaryHome home;
    const std::string module = home.In("My Plug.in.so");
    const CPackageInfo package("Maker", "Product", "Variant");
    const CAudioPluginDllFilePaths paths(&package, module);
    EXPECT_EQ(paths.GetInstallFolder(), home.In("My Plug.in data"));
    EXPECT_EQ(paths.GetSettingsFolder(), home.In("config/Maker/My Plug.in"));
    EXPECT_EQ(paths.GetUserDataFolder(), home.In("documents/Maker/Product/Variant"));

    const CAudioPluginDllFilePaths anonymous(nullptr, module);
    EXPECT_EQ(anonymous.GetSettingsFolder(), home.In("config/Marrow Sound/My Plug.in"));
    EXPECT_EQ(anonymous.GetUserDataFolder(), home.In("documents/Marrow Sound/My Plug.in"));

    const CAudioPluginDllFilePaths inNoModule(&package, "");
    EXPECT_STREQ(inNoModule.GetAboutFile(), "");
    EXPECT_STREQ(inNoModule.GetPreferencesFile(), "");

    // Of the code that runs.
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe");
    EXPECT_EQ(CAudioPluginDllFilePaths(&package).GetManualFile(),
              (self.parent_path() / self.stem()).string() + " data/manual.pdf");
}

TEST(AudioPluginFilePaths, HaveNoUserFolderWithoutProduct) {
    const CTemporaryHome home;
    const CPackageInfo package("Maker", nullptr, "Variant");
    const CAudioPluginDllFilePaths paths(&package, home.In("Plug.so"));
    EXPECT_STREQ(paths.GetUserDataFolder(), "");
    EXPECT_STREQ(paths.GetUserPresetsFolder(), "");
    EXPECT_FALSE(std::filesystem::exists(home.In("documents")));
    EXPECT_TRUE(IsFolder(home.In("config/Maker/Plug")));
}

TEST(AudioPluginFilePaths, StayWhereFoldersCantBeMade) {
    const CTemporaryHome home;
    home.Write("config", "in the way");
    const CPackageInfo package("Maker", "Product", "Variant");
    const CAudioPluginDllFilePaths paths(&package, home.In("Plug.so"));
    EXPECT_EQ(paths.GetPreferencesFile(), home.In("config/Maker/Plug/global.pref"));
    EXPECT_TRUE(IsFolder(paths.GetUserDataFolder()));
}

} // namespace

} // namespace Lathe::Audio::Plugin
