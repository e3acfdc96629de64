// Proves which presets are found, in which order and under which index, which one is the default,
// and what applying one does.
#include "datamodel/objects/capture/CaptureParam.h"
#include "plugin/interfaces/AudioPluginDataPath.h"
#include "plugin/presets/PresetLists.h"
#include "plugin/presets/PresetOwner.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <functional>
#include <stdlib.h>
#include <vector>

namespace Lathe::Audio::Plugin {

namespace {

namespace fs = std::filesystem;
using DataModel::Objects::CCaptureParam;
using DataModel::Objects::ICaptureParam;

struct COwner : IPresetOwner {
    void SetCurrentPreset(int index, const char* name) override {
        m_OnCurrentChanged();
        m_Calls += std::to_string(index) + name; // The name is still there.
    }
    bool LoadPreset(const char* path) override { return !(m_Calls += path).empty(); }
    IInputParams* GetInputParams() override { return m_Params; }

    std::function<void()> m_OnCurrentChanged = [] {};
    std::string m_Calls;
    IInputParams* m_Params = nullptr;
};

struct CDataPath : IAudioPluginDataPath {
    const char* GetModelFile() const override { return ""; }
    const char* GetSharedModelFile() const override { return ""; }
    const char* GetGlobalModelFile() const override { return ""; }
    const char* GetManualFile() const override { return ""; }
    const char* GetAboutFile() const override { return ""; }
    const char* GetFactoryPresetsFolder() const override { return "factory"; }
    const char* GetDefaultSkinFile() const override { return ""; }
    const char* GetLegalFolder() const override { return ""; }
    const char* GetPreferencesFile() const override { return ""; }
    const char* GetSettingsFolder() const override { return ""; }
    const char* GetUserDataFolder() const override { return ""; }
    const char* GetUserPresetsFolder() const override { return "user"; }
};

struct CLegacy : DSP::ILegacyPreset, Containers::IConstValueVector<double> {
    const char* GetName() const override { return "legacy"; }
    int GetKind() const override { return m_Kind; }
    const Containers::IConstValueVector<double>& GetValues() const override { return *this; }
    int GetCount() const LATHE_REALTIME override { return static_cast<int>(m_Values.size()); }
    double GetValue(int i) const LATHE_REALTIME override { return m_Values.at(std::size_t(i)); }

    int m_Kind = 0;
    std::vector<double> m_Values;
};
using CLegacies = CoreUtilities::TCollection<CLegacy, DSP::ILegacyPreset, DSP::ILegacyPresets>;

// Works in a fresh folder.
class Presets : public testing::Test {
protected:
    Presets() : m_Before(fs::current_path()) {
        fs::current_path(::mkdtemp((fs::temp_directory_path() / "presets-XXXXXX").string().data()));
    }
    ~Presets() override {
        const fs::path folder = fs::current_path();
        fs::current_path(m_Before);
        fs::remove_all(folder);
    }
    CPresetLists MakeLists(const DSP::ILegacyPresets& legacies = CLegacies(0)) {
        return CPresetLists(m_Owner, legacies, CDataPath());
    }

    fs::path m_Before;
    COwner m_Owner;
};

void Add(const fs::path& file) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << "<Preset/>";
}

// Counts the places.
std::string ListPresets(const CPresetFolder& folder, const IPresets& presets, int& next) {
    std::string text = folder.GetName() + std::string("{");
    for (int i = 0; i < folder.GetFoldersCount(); ++i)
        text += ListPresets(folder.GetFolder(i), presets, next);
    for (int i = 0; i < folder.GetItemsCount(); ++i) {
        EXPECT_EQ(folder.GetItem(i), next++);
        text += std::string("(") + presets.GetElement(folder.GetItem(i)).GetName() + ")";
    }
    return text + "}";
}

TEST_F(Presets, AreListedAsTheyLieInTheirFolders) {
    // One of each in a folder, so that the order is known; and what is no preset.
    for (const char* file : {"a.preset", "b/b.c.preset", "b/c/.preset", "b/c/d.preset/\xff.preset",
                             "b/c/d.preset/e/.preset.preset", "no.PRESET", "b/x.preset.bak",
                             "b/c/preset", "b/c/d.preset/e/f/no.presets"})
        Add(fs::path("user") / file);
    CPresetLists lists = MakeLists();
    int count = 0, none = 0;
    EXPECT_EQ(ListPresets(lists.GetUserFolder(), lists.GetUserPresets(), count),
              "User Presets{b{c{d.preset{e{f{}(.preset)}(\xff)}()}(b.c)}(a)}");
    EXPECT_EQ(count, lists.GetUserPresets().GetCount());
    EXPECT_EQ(ListPresets(lists.GetFactoryFolder(), lists.GetPresets(), none), "Factory Presets{}");
}

TEST_F(Presets, EndWhereLinksLeadRound) {
    Add("user/a.preset");
    fs::create_directory_symlink(".", "user/loop");
    fs::create_symlink("self", "user/self");
    CPresetLists lists = MakeLists();
    int count = 0;
    EXPECT_EQ(ListPresets(lists.GetUserFolder(), lists.GetUserPresets(), count),
              "User Presets{loop{}(a)}");
    // Twelve folders that lead to each other: more ways than anyone can walk.
    for (int i = 0; i < 144; ++i) {
        const fs::path folder = "user/" + std::to_string(i / 12);
        Add(folder / "x.preset");
        fs::create_directory_symlink("../" + std::to_string(i % 12), folder / std::to_string(i));
    }
    lists.Refresh();
    EXPECT_GT(lists.GetCount(), 1);
}

TEST_F(Presets, HaveTheirDefaultInTheRootsAlone) {
    for (const char* file :
         {"user/in/Default.preset", "user/default.preset", "factory/in/Default.preset"})
        Add(file);
    EXPECT_EQ(MakeLists().GetDefaultPreset(), nullptr);
    Add("factory/Default.preset");
    CPresetLists lists = MakeLists();
    lists.GetDefaultPreset()->Apply();
    Add("user/Default.preset");
    lists.Refresh();
    lists.GetDefaultPreset()->Apply();
    fs::remove("user/Default.preset");
    lists.Refresh();
    lists.GetDefaultPreset()->Apply();
    const std::string factory = "1Defaultfactory/Default.preset";
    std::erase(m_Owner.m_Calls, '3'), std::erase(m_Owner.m_Calls, '4');
    EXPECT_EQ(m_Owner.m_Calls, factory + "Defaultuser/Default.preset" + factory);
}

TEST_F(Presets, CountTheFactorysBeforeTheUsers) {
    CPresetLists lists = MakeLists();
    for (const int index : {-2, 0, 1})
        EXPECT_EQ(lists.WrapIndex(index), 0) << "without presets";
    EXPECT_EQ(lists.FindByIndex(0), nullptr);
    for (const char* file : {"factory/same.preset", "user/in/same.preset", "user/same.preset"})
        Add(file);
    CPresetLists three = MakeLists();
    const int wrapped[][2] = {{-2, 2}, {-1, 2}, {0, 0}, {2, 2}, {3, 0}, {99, 0}};
    for (const auto& [index, result] : wrapped)
        EXPECT_EQ(three.WrapIndex(index), result) << index;
    EXPECT_TRUE(!three.FindByIndex(-1) && !three.FindByIndex(3));
    three.FindByIndex(0)->Apply();
    three.FindByIndex(1)->Apply();
    m_Owner.m_OnCurrentChanged = [&] {
        fs::remove_all("user");
        three.Refresh(); // While one of them is being applied.
    };
    three.FindByIndex(2)->Apply();
    EXPECT_EQ(m_Owner.m_Calls,
              "0samefactory/same.preset1sameuser/in/same.preset2sameuser/same.preset");
    EXPECT_EQ(three.GetCount(), 1);
}

TEST_F(Presets, OfTheFilterSetItsParameters) {
    Add("factory/hidden.preset");
    Add("user/u.preset");
    CLegacies legacies(4);
    for (int i = 0; i < 4; ++i)
        legacies[i].m_Kind = i % 3;
    legacies[0].m_Values = {5.0, 0.0, 7.0, 9.0, 9.0};
    legacies[1].m_Values = {1.0, 0.0, -1.0, 1.0, 1.0};
    legacies[2].m_Values = {1.0, 1.0, 1.0};
    legacies[3].m_Values = {1.0};
    CPresetLists lists = MakeLists(legacies);
    int count = 0;
    EXPECT_EQ(ListPresets(lists.GetFactoryFolder(), lists.GetPresets(), count),
              "Factory Presets{(legacy)(legacy)(legacy)(legacy)}");
    lists.FindByIndex(3)->Apply(); // Without a host.
    EXPECT_EQ(m_Owner.m_Calls + std::to_string(lists.GetCount()), "3legacy5");

    CoreUtilities::TCollection<CCaptureParam, ICaptureParam> params(4);
    m_Owner.m_Params = &params;
    // As wide as the numbers that are drawn, so that each gives a whole one.
    for (int i = 0; i < 4; ++i) {
        params[i].GetInfo().SetMax(2147483647.0 - i);
        params[i].GetInfo().SetMin(-i);
    }
    const auto apply = [&](int preset) {
        params[0].SetValue(1.0);
        lists.FindByIndex(preset)->Apply();
        EXPECT_EQ(params[0].GetValue(), 0.0) << "Bypass";
        return std::vector{params[1].GetValue(), params[2].GetValue(), params[3].GetValue()};
    };
    EXPECT_EQ(apply(0), (std::vector{5.0, 0.0, 7.0}));
    const std::vector<double> random = apply(1);
    EXPECT_TRUE(random[0] != 5.0 && random[1] == 0.0 && random[2] != 7.0);
    EXPECT_NE(random[0] + 1.0, random[2] + 3.0) << "a draw for each";
    for (const double value : random)
        EXPECT_NEAR(value, std::round(value), 1e-5); // The products on the way exceed 53 bits.
    EXPECT_EQ(apply(2), random) << "an unknown kind";
    EXPECT_EQ(apply(3), (std::vector{1.0, random[1], random[2]})) << "more than the preset holds";
}

} // namespace

} // namespace Lathe::Audio::Plugin
