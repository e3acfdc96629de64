// The settings come back from their file, are the factory's where it doesn't tell, say when they
// change, and are made ready once for all instances.
#include "core/Fixtures.h"
#include "platform/TemporaryHome.h"
#include "plugin/settings/AudioPluginFilePathsBase.h"
#include "plugin/settings/AudioPluginStaticSettings.h"
#include "plugin/settings/PackageInfo.h"
#include "serialization/MemDataObject.h"

#include <cmath>
#include <limits>
#include <thread>

namespace Lathe::Audio::Plugin {

namespace {

constexpr double FactoryRate = 40.0;

// In the home that the environment gives.
struct CTestPaths : CAudioPluginFilePathsBase {
    explicit CTestPaths(const IConstPackageInfo*, std::string home = ::getenv("HOME"))
        : CAudioPluginFilePathsBase(home + "/install", home + "/settings", "") {}
};

class AudioPluginSettings : public testing::Test {
protected:
    using Settings = std::unique_ptr<CAudioPluginDefaultSettings>;

    // The maxima of the parameters are 0, 10 and 20.
    static Settings Make(const CAudioPluginFilePathsBase& paths) {
        Settings settings(new CAudioPluginDefaultSettings(paths, paths.GetInstallFolder()));
        DSP::CParamInfos infos(3);
        for (int i = 0; i < infos.GetCount(); ++i)
            infos[i].SetMax(10.0 * i);
        settings->SetFactoryRefreshRate(FactoryRate);
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
    static Serialization::CMemDataObject GetAll(const CAudioPluginDefaultSettings& settings) {
        Serialization::CMemDataObject all;
        EXPECT_TRUE(settings.Serialize(all));
        return all;
    }

    const CTemporaryHome m_Home;
    const CTestPaths m_Paths{nullptr};
    CMIDICCSettings m_List{3};
};

TEST_F(AudioPluginSettings, ComeBackFromTheirFile) {
    const Settings saved = Make(m_Paths);
    m_List[1].SetChannel(7);
    saved->SetInputCCSettings(m_List);
    m_List[2].SetMax(0.1);
    saved->SetOutputCCSettings(m_List);
    saved->SetRefreshRate(33.3);
    saved->SetSkinFile(m_Home.In("install/Skins/Dark & Light.xml").c_str());
    saved->Save();

    const std::string file = m_Home.Read("settings/global.pref");
    EXPECT_NE(file.find("<GlobalSettings version=\"3\" skinFile=\"Skins/Dark &amp; Light.xml\""),
              std::string::npos);
    EXPECT_EQ(GetAll(*Load(file)), GetAll(*saved));
    for (std::size_t size = 0; size < file.size(); size += 97) // Whatever is left of it.
        EXPECT_EQ(GetAll(*Load(file.substr(0, size))), GetAll(*Make(m_Paths)));
}

TEST_F(AudioPluginSettings, TakeWhatTheFileHoldsOfUse) {
    const std::string skin = m_Paths.GetDefaultSkinFile();
    const std::string outside = m_Home.In("installed/x");
    const struct {
        std::string m_Attributes, m_SkinFile;
        double m_Rate;
    } cases[] = {
        {"", skin, FactoryRate},
        {"version='3' skinFile='S/x' outputRefreshRate='12.5'", m_Home.In("install/S/x"), 12.5},
        {"version='2' skinFile='/S/x' outputRefreshRate='12.5'", "/S/x", FactoryRate},
        {"version='9' outputRefreshRate='1e300'", skin, 1e300},
        {"version='3' outputRefreshRate='1e999'", skin, std::numeric_limits<double>::max()},
        {"version='3' outputRefreshRate='nan'", skin, FactoryRate},
        {"version='3' outputRefreshRate='-5'", skin, FactoryRate},
        {"version='x' skinFile='" + outside + "' outputRefreshRate='x'", outside, FactoryRate},
    };
    for (const auto& c : cases) {
        const Settings settings =
            Load("<R " + c.m_Attributes +
                 "><inputCCSettings itemCount='2000000000'><item1 version='3' channel='9'/>"
                 "<item99/></inputCCSettings><outputCCSettings itemCount='-1'/></R>");
        EXPECT_EQ(std::unique_ptr<char[]>(settings->GetSkinFile()).get(), c.m_SkinFile);
        EXPECT_EQ(settings->GetRefreshRate(), c.m_Rate) << c.m_Attributes;
        CInputMIDICCSettings inputs(100);
        settings->GetInputCCSettings(inputs);
        EXPECT_EQ(inputs[1].GetChannel(), 9);
        EXPECT_EQ(inputs[2].GetMax(), 20.0);
        settings->Save();
        const Settings again = Load(m_Home.Read("settings/global.pref"));
        EXPECT_EQ(std::unique_ptr<char[]>(again->GetSkinFile()).get(), c.m_SkinFile);
    }
}

TEST_F(AudioPluginSettings, RaiseTheirEvents) {
    const Settings settings = Make(m_Paths);
    std::string raised;
    CActionCommand onInputs([&] { raised += 'i'; });
    CActionCommand onOutputs([&] { raised += 'o'; });
    CActionCommand onRate([&] { raised += 'r'; });
    settings->GetInputCCSettingsChangedEvent().AddCommand(onInputs);
    settings->GetOutputCCSettingsChangedEvent().AddCommand(onOutputs);
    settings->GetRefreshRateChangedEvent().AddCommand(onRate);
    settings->SetInputCCSettings(m_List);
    settings->SetInputCCSettings(m_List);
    settings->SetOutputCCSettings(m_List);
    for (const double rate : {FactoryRate, 0.0, -1.0, std::nan(""), 60.0, 60.0})
        settings->SetRefreshRate(rate);
    settings->SetSkinFile("/x");
    settings->SetSkinFile(nullptr);
    settings->Load();
    EXPECT_EQ(raised, "iior");
}

TEST_F(AudioPluginSettings, DoWithoutAFile) {
    m_Home.Write("file", "in the way");
    for (const std::string& folder : {m_Home.In("file/x"), std::string()}) {
        const CAudioPluginFilePathsBase paths(m_Home.In("install"), folder, "");
        const Settings settings = Make(paths);
        settings->Save();
        settings->Load();
        EXPECT_EQ(GetAll(*settings), GetAll(*Make(m_Paths)));
    }
}

TEST_F(AudioPluginSettings, AreLoadedOnceAndSharedByThreads) {
    m_Home.Write("settings/global.pref", "<R version='3' outputRefreshRate='12'/>");
    TAudioPluginConfig<CTestPaths> config(nullptr);
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
            delete[] settings.GetSkinFile();
            settings.Save();
        }
    };
    std::thread other(run, 1);
    run(2);
    other.join();
    settings.SetRefreshRate(30.0);
    config.Init(DSP::CParamInfos(1), DSP::CParamInfos(1));
    EXPECT_EQ(settings.GetRefreshRate(), 30.0);

    const CPackageInfo package("Maker", "Product", "Variant");
    EXPECT_EQ(&GetStaticSettings(&package), &GetStaticSettings(nullptr));
}

} // namespace

} // namespace Lathe::Audio::Plugin
