// The shared settings come back from their file, or are the factory's where it doesn't tell, and
// say when they change.
#include "plugin/settings/AudioPluginDefaultSettings.h"

#include "plugin/settings/SettingsFixtures.h"

#include <limits>
#include <memory>
#include <thread>

namespace Lathe::Audio::Plugin::Tests {

namespace {

constexpr int InputCount = 5;
constexpr int OutputCount = 3;
constexpr double FactoryRate = 40.0;

class AudioPluginDefaultSettings : public testing::Test {
protected:
    using Settings = std::unique_ptr<CAudioPluginDefaultSettings>;

    Settings Make() const {
        auto settings =
            std::make_unique<CAudioPluginDefaultSettings>(m_Paths, m_Paths.GetInstallFolder());
        settings->SetFactoryRefreshRate(FactoryRate);
        settings->Init(MakeInfos(InputCount), MakeInfos(OutputCount));
        return settings;
    }
    Settings Load(const std::string& file) const {
        m_Home.Write(PreferencesFile, file);
        Settings settings = Make();
        settings->Load();
        return settings;
    }
    static std::string GetSkin(const CAudioPluginDefaultSettings& settings) {
        return std::unique_ptr<char[]>(settings.GetSkinFile()).get();
    }
    // One number for all that the lists hold.
    static std::vector<double> GetLists(const CAudioPluginDefaultSettings& settings) {
        CInputMIDICCSettings inputs(InputCount + 1);
        CMIDICCSettings outputs(OutputCount + 1);
        settings.GetInputCCSettings(inputs);
        settings.GetOutputCCSettings(outputs);
        std::vector<double> values;
        for (const IMIDICCSettings* list :
             {static_cast<IMIDICCSettings*>(&inputs), static_cast<IMIDICCSettings*>(&outputs)}) {
            for (int i = 0; i < list->GetCount(); ++i) {
                const IMIDICCSetting& setting = list->GetElement(i);
                values.insert(values.end(),
                              {double(setting.GetChannel()), double(setting.GetNumber()),
                               double(setting.IsAutomationEnabled()), setting.GetMin(),
                               setting.GetMax()});
            }
        }
        return values;
    }
    void ExpectFactory(const CAudioPluginDefaultSettings& settings) const {
        EXPECT_EQ(GetSkin(settings), m_Home.In("install/Skins/default.xml"));
        EXPECT_EQ(GetLists(settings), GetLists(*Make()));
        EXPECT_EQ(settings.GetRefreshRate(), FactoryRate);
    }

    const CTemporaryHome m_Home;
    const CTestPaths m_Paths{m_Home};
};

TEST_F(AudioPluginDefaultSettings, StartFromTheDescriptions) {
    const Settings settings = Make();
    settings->Load();
    EXPECT_STREQ(settings->GetFactorySkinFile(), m_Paths.GetDefaultSkinFile());
    ExpectFactory(*settings);
    CInputMIDICCSettings inputs(InputCount);
    settings->GetInputCCSettings(inputs);
    EXPECT_EQ(inputs[4].GetNumber(), 4);
    EXPECT_EQ(inputs[4].GetMin(), -4.0);
    EXPECT_EQ(inputs[4].GetMax(), 40.0);
    EXPECT_FALSE(std::filesystem::exists(m_Home.In(PreferencesFile)));
}

TEST_F(AudioPluginDefaultSettings, ComeBackFromTheirFile) {
    const Settings saved = Make();
    CInputMIDICCSettings inputs(InputCount);
    CMIDICCSettings outputs(OutputCount);
    inputs[1].SetChannel(7);
    outputs[2].SetMax(0.1);
    saved->SetInputCCSettings(inputs);
    saved->SetOutputCCSettings(outputs);
    saved->SetRefreshRate(33.3);
    saved->SetSkinFile(m_Home.In("install/Skins/Dark & Light/x.xml").c_str());
    saved->Save();

    const std::string file = m_Home.Read(PreferencesFile);
    for (const char* part :
         {"<GlobalSettings version=\"3\"", "skinFile=\"Skins/Dark &amp; Light/x.xml\"",
          "<inputCCSettings itemCount=\"5\"", "<outputCCSettings itemCount=\"3\""})
        EXPECT_NE(file.find(part), std::string::npos) << part << " in " << file;
    const Settings loaded = Make();
    loaded->Load();
    EXPECT_EQ(GetSkin(*loaded), GetSkin(*saved));
    EXPECT_EQ(GetLists(*loaded), GetLists(*saved));
    EXPECT_NE(GetLists(*loaded), GetLists(*Make()));
    EXPECT_EQ(loaded->GetRefreshRate(), 33.3);
}

TEST_F(AudioPluginDefaultSettings, AreTheFactorysWithoutAUsableFile) {
    const std::string head = "<R version=\"3\" outputRefreshRate=\"9\" skinFile=\"a\"";
    for (const std::string& file :
         {std::string(), head, head + "><inputCCSettings itemCount=\"1\">", std::string("<R/>"),
          std::string("\0\xFF<", 3)}) {
        SCOPED_TRACE(file);
        ExpectFactory(*Load(file));
    }
    // A load forgets what was set before.
    const Settings settings = Load("");
    settings->SetRefreshRate(9.0);
    settings->SetSkinFile("/x");
    settings->Load();
    ExpectFactory(*settings);
}

TEST_F(AudioPluginDefaultSettings, TakeTheSkinFromAnyPlace) {
    const std::pair<std::string, std::string> cases[] = {
        {"Skins/x.xml", m_Home.In("install/Skins/x.xml")},
        {"/elsewhere/x.xml", "/elsewhere/x.xml"},
        {m_Home.In("installed/x.xml"), m_Home.In("installed/x.xml")},
        {"", ""},
    };
    for (const auto& [stored, path] : cases) {
        const Settings settings = Load("<R version=\"3\" skinFile=\"" + stored + "\"/>");
        EXPECT_EQ(GetSkin(*settings), path);
        settings->Save();
        EXPECT_NE(m_Home.Read(PreferencesFile).find("skinFile=\"" + stored + "\""),
                  std::string::npos);
    }
}

TEST_F(AudioPluginDefaultSettings, TakeTheRefreshRateOfNewFilesThatIsOne) {
    const std::pair<const char*, double> cases[] = {
        {"version=\"3\" outputRefreshRate=\"12.5\"", 12.5},
        {"version=\"4\" outputRefreshRate=\"500\"", 500.0},
        {"version=\"2\" outputRefreshRate=\"12.5\"", FactoryRate},
        {"outputRefreshRate=\"12.5\"", FactoryRate},
        {"version=\"3\"", FactoryRate},
        {"version=\"3\" outputRefreshRate=\"nan\"", FactoryRate},
        {"version=\"3\" outputRefreshRate=\"inf\"", FactoryRate},
        {"version=\"3\" outputRefreshRate=\"-5\"", FactoryRate},
        {"version=\"3\" outputRefreshRate=\"0\"", FactoryRate},
        {"version=\"3\" outputRefreshRate=\"fast\"", FactoryRate},
    };
    for (const auto& [attributes, rate] : cases)
        EXPECT_EQ(Load("<R " + std::string(attributes) + "/>")->GetRefreshRate(), rate)
            << attributes;
}

TEST_F(AudioPluginDefaultSettings, KeepTheSizesOfTheirLists) {
    const Settings settings =
        Load("<R version=\"3\"><inputCCSettings itemCount=\"2000000000\"><item1 version=\"3\" "
             "channel=\"9\"/><item99 version=\"3\" channel=\"8\"/></inputCCSettings>"
             "<outputCCSettings itemCount=\"-1\"/></R>");
    CInputMIDICCSettings inputs(InputCount + 100);
    settings->GetInputCCSettings(inputs);
    EXPECT_EQ(inputs[1].GetChannel(), 9);
    EXPECT_EQ(inputs[1].GetMax(), 10.0);
    EXPECT_EQ(inputs[4].GetMax(), 40.0);
    EXPECT_EQ(inputs[99].GetChannel(), 0);
}

TEST_F(AudioPluginDefaultSettings, RaiseTheirEvents) {
    const Settings settings = Make();
    const CEventCounter inputs(settings->GetInputCCSettingsChangedEvent());
    const CEventCounter outputs(settings->GetOutputCCSettingsChangedEvent());
    const CEventCounter rate(settings->GetRefreshRateChangedEvent());
    const auto expectCounts = [&](int inputsCount, int outputsCount, int rateCount) {
        EXPECT_EQ(inputs.m_Count, inputsCount);
        EXPECT_EQ(outputs.m_Count, outputsCount);
        EXPECT_EQ(rate.m_Count, rateCount);
    };
    settings->SetInputCCSettings(CInputMIDICCSettings(InputCount));
    settings->SetInputCCSettings(CInputMIDICCSettings(InputCount));
    expectCounts(2, 0, 0);
    settings->SetOutputCCSettings(CMIDICCSettings(1));
    expectCounts(2, 1, 0);
    settings->SetRefreshRate(FactoryRate);
    expectCounts(2, 1, 0);
    for (const double bad : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()})
        settings->SetRefreshRate(bad);
    settings->SetRefreshRate(60.0);
    EXPECT_EQ(settings->GetRefreshRate(), 60.0);
    settings->SetSkinFile("/x");
    settings->Load();
    expectCounts(2, 1, 1);
}

TEST_F(AudioPluginDefaultSettings, SaveNothingWhereTheyCant) {
    std::filesystem::remove_all(m_Home.In("settings"));
    m_Home.Write("settings", "in the way");
    Make()->Save();
    EXPECT_EQ(m_Home.Read("settings"), "in the way");

    const CAudioPluginFilePathsBase nowhere("", "", "");
    CAudioPluginDefaultSettings settings(nowhere, "");
    settings.Init(MakeInfos(InputCount), MakeInfos(OutputCount));
    settings.Save();
    settings.Load();
    EXPECT_EQ(GetLists(settings), GetLists(*Make()));
}

// Settings that are torn mix two writers' numbers.
TEST_F(AudioPluginDefaultSettings, AreWholeForEveryThread) {
    const Settings settings = Make();
    const auto setList = [&](int channel) {
        CInputMIDICCSettings inputs(InputCount);
        for (int i = 0; i < InputCount; ++i)
            inputs[i].SetChannel(channel);
        settings->SetInputCCSettings(inputs);
    };
    setList(1);
    const auto write = [&](int channel) {
        for (int i = 0; i < 200; ++i) {
            setList(channel);
            settings->SetSkinFile(std::string(static_cast<std::size_t>(channel * 50), 'x').c_str());
            settings->SetRefreshRate(channel);
        }
    };
    std::thread first(write, 1);
    std::thread second(write, 2);
    for (int i = 0; i < 50; ++i) {
        CInputMIDICCSettings inputs(InputCount);
        settings->GetInputCCSettings(inputs);
        for (int k = 1; k < InputCount; ++k)
            EXPECT_EQ(inputs[k].GetChannel(), inputs[0].GetChannel());
        GetSkin(*settings);
        settings->Save();
    }
    first.join();
    second.join();
    EXPECT_EQ(GetSkin(*settings).size(), settings->GetRefreshRate() * 50.0);
}

} // namespace

} // namespace Lathe::Audio::Plugin::Tests
