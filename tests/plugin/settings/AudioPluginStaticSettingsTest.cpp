// A process has one set of settings, which is made ready once.
#include "plugin/settings/AudioPluginStaticSettings.h"

#include "plugin/settings/PackageInfo.h"
#include "plugin/settings/SettingsFixtures.h"

#include <string>
#include <thread>

namespace Lathe::Audio::Plugin::Tests {

namespace {

// In the home that the environment gives.
class CPathsAtHome : public CAudioPluginFilePathsBase {
public:
    explicit CPathsAtHome(const IConstPackageInfo*)
        : CAudioPluginFilePathsBase("", ::getenv("HOME") + std::string("/settings"), "") {}
};

TEST(AudioPluginStaticSettings, AreLoadedOnceAndReadyForAllWhoAsked) {
    const CTemporaryHome home;
    home.Write(PreferencesFile, "<R version=\"3\" outputRefreshRate=\"12\"/>");
    TAudioPluginConfig<CPathsAtHome> config(nullptr);
    IStaticSettings& settings = config;
    const DSP::CParamInfos infos = MakeInfos(4);
    const auto init = [&] {
        settings.Init(infos, infos);
        EXPECT_EQ(settings.GetDefaultSettings().GetRefreshRate(), 12.0);
    };
    std::thread first(init);
    std::thread second(init);
    first.join();
    second.join();

    settings.GetDefaultSettings().SetRefreshRate(30.0);
    settings.Init(MakeInfos(1), MakeInfos(1));
    EXPECT_EQ(settings.GetDefaultSettings().GetRefreshRate(), 30.0);
    CMIDICCSettings list(4);
    settings.GetDefaultSettings().GetOutputCCSettings(list);
    EXPECT_EQ(list[3].GetMax(), 30.0);
    EXPECT_EQ(settings.GetDataPath().GetPreferencesFile(), home.In(PreferencesFile));
}

TEST(AudioPluginStaticSettings, AreTheSameForEveryRequest) {
    const CTemporaryHome home;
    const CPackageInfo package("Maker", "Product", "Variant");
    IStaticSettings& settings = GetStaticSettings(&package);
    EXPECT_EQ(&GetStaticSettings(nullptr), &settings);
    EXPECT_NE(*settings.GetDataPath().GetUserDataFolder(), '\0');
}

} // namespace

} // namespace Lathe::Audio::Plugin::Tests
