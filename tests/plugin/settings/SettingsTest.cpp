// The plug-in's paths follow from module, package and user; its settings come back from their file,
// are the factory's where it doesn't tell, say when they change, and are loaded once for all.
#include "plugin/settings/AudioPluginDllFilePaths.h"

#include "datamodel/Journal.h"
#include "plugin/TestHost.h"

#include <limits>
#include <thread>

namespace Lathe::Audio::Plugin {
namespace {

namespace fs = std::filesystem;

const CPackageInfo s_Package("Maker", "Product", "Variant");

TEST(AudioPluginFilePaths, FollowModuleAndPackage) {
    const CTemporaryHome home;
    const CAudioPluginDllFilePaths paths(&s_Package, "/m/My Plug.in.so");
    const CAudioPluginDllFilePaths anonymous(nullptr, "/m/Plug.so");
    const fs::path self = fs::read_symlink("/proc/self/exe");
    const std::string user = home.In("documents/Maker/Product/Variant");
    const std::pair<std::string, std::string> cases[] = {
        {paths.GetSharedModelFile(), "/m/My Plug.in data/Model/shared.model"},
        {paths.GetDefaultSkinFile(), "/m/My Plug.in data/Skins/default.xml"},
        {paths.GetPreferencesFile(), home.In("config/Maker/My Plug.in/global.pref")},
        {paths.GetUserPresetsFolder(), user + "/Presets"},
        {anonymous.GetSettingsFolder(), home.In("config/Marrow Sound/Plug")},
        {anonymous.GetUserDataFolder(), home.In("documents/Marrow Sound/Plug")},
        {CAudioPluginDllFilePaths(&s_Package).GetManualFile(),
         (self.parent_path() / self.stem()).string() + " data/manual.pdf"}};
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(path, expected);
    for (const std::string& folder :
         {home.In("config/Maker/My Plug.in"), user + "/Skins", user + "/Presets"})
        EXPECT_TRUE(fs::is_directory(folder)) << folder;
}

TEST(AudioPluginFilePaths, AreEmptyWhereThereIsNoSuchPlace) {
    const CTemporaryHome home;
    const CPackageInfo withoutProduct("Maker", nullptr, "Variant");
    for (const char* module : {"", "/m/Plug.so"}) {
        const CAudioPluginDllFilePaths paths(&withoutProduct, module);
        EXPECT_STREQ(paths.GetUserPresetsFolder(), "");
        EXPECT_EQ(*paths.GetModelFile() == '\0', *module == '\0');
        EXPECT_EQ(fs::exists(paths.GetSettingsFolder()), *module != '\0');
    }
    EXPECT_FALSE(fs::exists(home.In("documents")));
}

class AudioPluginSettings : public testing::Test {
protected:
    using Settings = std::unique_ptr<CAudioPluginDefaultSettings>;

    // At 40 hertz, and the maxima of the parameters are 0, 10 and 20.
    static Settings Make(const CAudioPluginFilePathsBase& paths) {
        Settings settings(new CAudioPluginDefaultSettings(paths, paths.GetInstallFolder()));
        DSP::CParamInfos infos(3);
        for (int i = 0; i < infos.GetCount(); ++i)
            infos[i].SetMax(10.0 * i);
        settings->SetFactoryRefreshRate(40.0);
        settings->Init(infos, infos);
        return settings;
    }
    Settings Load(const std::string& file) const {
        m_Home.Write("settings/global.pref", file);
        Settings settings = Make(m_Paths);
        settings->SetSkinFile("/before");
        settings->SetRefreshRate(1.0);
        settings->Load();
        return settings;
    }
    static std::string GetAll(const CAudioPluginDefaultSettings& settings) {
        Serialization::CXmlDataObject all("GlobalSettings");
        EXPECT_TRUE(settings.Serialize(all));
        return Serialization::Tests::GetText(all);
    }

    const CTemporaryHome m_Home;
    const CTestPaths m_Paths;
    CMIDICCSettings m_List{3};
};

TEST_F(AudioPluginSettings, ComeBackFromTheirFile) {
    const Settings saved = Make(m_Paths);
    m_List[1].SetChannel(7);
    saved->SetInputCCSettings(m_List);
    m_List[2].SetMax(0.1);
    saved->SetOutputCCSettings(m_List);
    saved->SetRefreshRate(33.3);
    saved->SetSkinFile(m_Home.In("data/Skins/Dark & Light.xml").c_str());
    saved->Save();
    const Settings loaded = Make(m_Paths);
    loaded->Load();
    const std::string all = GetAll(*saved);
    EXPECT_EQ(GetAll(*loaded), all);
    EXPECT_NE(all.find("<GlobalSettings version=\"3\" skinFile=\"Skins/Dark &amp; Light.xml\""),
              std::string::npos);
    for (std::size_t size = 0; size < all.size(); size += 97) // Whatever is left of the file.
        EXPECT_EQ(GetAll(*Load(all.substr(0, size))), GetAll(*Make(m_Paths)));
}

TEST_F(AudioPluginSettings, TakeWhatTheFileHoldsOfUse) {
    const std::string skin = m_Paths.GetDefaultSkinFile(), outside = m_Home.In("database/x");
    const std::tuple<std::string, std::string, double> cases[] = {
        {"", skin, 40.0},
        {"version='3' skinFile='S/x' outputRefreshRate='12.5'", m_Home.In("data/S/x"), 12.5},
        {"version='2' skinFile='/S/x' outputRefreshRate='12.5'", "/S/x", 40.0},
        {"version='9' outputRefreshRate='1e300'", skin, 1e300},
        {"version='3' outputRefreshRate='1e999'", skin, std::numeric_limits<double>::max()},
        {"version='3' outputRefreshRate='nan'", skin, 40.0},
        {"version='3' outputRefreshRate='-5'", skin, 40.0},
        {"version='x' skinFile='" + outside + "' outputRefreshRate='x'", outside, 40.0},
    };
    for (const auto& [attributes, skinFile, rate] : cases) {
        SCOPED_TRACE(attributes);
        const Settings settings =
            Load("<R " + attributes +
                 "><inputCCSettings itemCount='2000000000'><item1 version='3' channel='9'/>"
                 "<item99/></inputCCSettings><outputCCSettings itemCount='-1'/></R>");
        EXPECT_EQ(TakeText(settings->GetSkinFile()), skinFile);
        EXPECT_EQ(settings->GetRefreshRate(), rate);
        CInputMIDICCSettings inputs(100);
        settings->GetInputCCSettings(inputs);
        EXPECT_EQ(inputs[1].GetChannel(), 9);
        EXPECT_EQ(inputs[2].GetMax(), 20.0);
        EXPECT_EQ(TakeText(Load(GetAll(*settings))->GetSkinFile()), skinFile);
    }
}

TEST_F(AudioPluginSettings, RaiseTheirEvents) {
    const Settings settings = Make(m_Paths);
    DataModel::CJournal journal(settings->GetInputCCSettingsChangedEvent());
    journal.Listen(settings->GetOutputCCSettingsChangedEvent(), 'o');
    journal.Listen(settings->GetRefreshRateChangedEvent(), 'r');
    settings->SetInputCCSettings(m_List);
    settings->SetInputCCSettings(m_List);
    settings->SetOutputCCSettings(m_List);
    for (const double rate : {40.0, 0.0, -1.0, double{NAN}, 60.0, 60.0})
        settings->SetRefreshRate(rate);
    settings->SetSkinFile("/x");
    settings->Load();
    EXPECT_EQ(journal.Take(), "ccor");
}

TEST_F(AudioPluginSettings, AreLoadedOnceAndSharedByThreads) {
    m_Home.Write("settings/global.pref", "<R version='3' outputRefreshRate='12'/>");
    CTestSettings config(nullptr);
    IAudioPluginDefaultSettings& settings = config.GetDefaultSettings();
    const auto run = [&](int channel) {
        config.Init(DSP::CParamInfos(2), DSP::CParamInfos(2));
        EXPECT_EQ(settings.GetRefreshRate(), 12.0);
        for (int i = 0; i < 100; ++i) {
            CMIDICCSettings list(2);
            list[0].SetChannel(channel);
            list[1].SetChannel(channel);
            settings.SetInputCCSettings(list);
            settings.GetInputCCSettings(list);
            EXPECT_EQ(list[0].GetChannel(), list[1].GetChannel()); // Never half of each thread's.
            settings.SetSkinFile(channel == 1 ? "/short" : "/much/longer/than/that/other/one");
            TakeText(settings.GetSkinFile());
            settings.Save();
        }
    };
    std::thread other(run, 1);
    run(2);
    other.join();
    settings.SetRefreshRate(30.0);
    config.Init(DSP::CParamInfos(1), DSP::CParamInfos(1));
    EXPECT_EQ(settings.GetRefreshRate(), 30.0);
    EXPECT_EQ(&GetStaticSettings(&s_Package), &GetStaticSettings(nullptr));
}

} // namespace
} // namespace Lathe::Audio::Plugin
