// The plug-in's paths follow from module, package and user, and the folders that are its own are
// made.
#include "plugin/settings/AudioPluginDllFilePaths.h"

#include "platform/TemporaryHome.h"
#include "plugin/settings/PackageInfo.h"

#include <gtest/gtest.h>

namespace Lathe::Audio::Plugin {

namespace {

const CPackageInfo s_Package("Maker", "Product", "Variant");

TEST(AudioPluginFilePaths, FollowModuleAndPackage) {
    const CTemporaryHome home;
    const CAudioPluginDllFilePaths paths(&s_Package, "/m/My Plug.in.so");
    const std::string settings = home.In("config/Maker/My Plug.in");
    const std::string user = home.In("documents/Maker/Product/Variant");
    EXPECT_STREQ(paths.GetSharedModelFile(), "/m/My Plug.in data/Model/shared.model");
    EXPECT_STREQ(paths.GetDefaultSkinFile(), "/m/My Plug.in data/Skins/default.xml");
    EXPECT_EQ(paths.GetPreferencesFile(), settings + "/global.pref");
    EXPECT_EQ(paths.GetUserPresetsFolder(), user + "/Presets");
    EXPECT_TRUE(std::filesystem::is_directory(settings));
    EXPECT_TRUE(std::filesystem::is_directory(user + "/Skins"));
    EXPECT_TRUE(std::filesystem::is_directory(user + "/Presets"));

    const CAudioPluginDllFilePaths anonymous(nullptr, "/m/Plug.so");
    EXPECT_EQ(anonymous.GetSettingsFolder(), home.In("config/Marrow Sound/Plug"));
    EXPECT_EQ(anonymous.GetUserDataFolder(), home.In("documents/Marrow Sound/Plug"));

    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe");
    EXPECT_EQ(CAudioPluginDllFilePaths(&s_Package).GetManualFile(),
              (self.parent_path() / self.stem()).string() + " data/manual.pdf");
}

TEST(AudioPluginFilePaths, AreEmptyWhereThereIsNoSuchPlace) {
    const CTemporaryHome home;
    const CPackageInfo withoutProduct("Maker", nullptr, "Variant");
    for (const char* module : {"", "/m/Plug.so"}) {
        const CAudioPluginDllFilePaths paths(&withoutProduct, module);
        EXPECT_STREQ(paths.GetUserDataFolder(), "");
        EXPECT_STREQ(paths.GetUserPresetsFolder(), "");
        EXPECT_EQ(*paths.GetModelFile() == '\0', *module == '\0');
        EXPECT_EQ(std::filesystem::exists(paths.GetSettingsFolder()), *module != '\0');
    }
    EXPECT_FALSE(std::filesystem::exists(home.In("documents")));
}

} // namespace

} // namespace Lathe::Audio::Plugin
