// Which presets are found, in which order and under which index, which one is the default, and what
// applying one does.
#include "datamodel/objects/capture/CaptureParam.h"
#include "plugin/TestHost.h"

namespace Lathe::Audio::Plugin {
namespace {

namespace fs = std::filesystem;
using DataModel::Objects::CCaptureParam;
using DataModel::Objects::ICaptureParam;

struct CLegacy : DSP::ILegacyPreset, Containers::IConstValueVector<double> {
    const char* GetName() const override { return "legacy"; }
    int GetKind() const override { return m_Kind; }
    const Containers::IConstValueVector<double>& GetValues() const override { return *this; }
    int GetCount() const override { return static_cast<int>(m_Values.size()); }
    double GetValue(int i) const override { return m_Values.at(std::size_t(i)); }

    int m_Kind = 0;
    std::vector<double> m_Values;
};
using CLegacies = CoreUtilities::TCollection<CLegacy, DSP::ILegacyPreset, DSP::ILegacyPresets>;

// The factory's lie in "data/Presets", the user's in "user/Presets".
class Presets : public testing::Test, protected IPresetOwner {
protected:
    void SetCurrentPreset(int index, const char* name) override {
        m_OnCurrentChanged();
        m_Calls += std::to_string(index) + name; // The name is still there.
    }
    bool LoadPreset(const char* path) override {
        m_Calls += std::string(path).substr(m_Home.In("").size()) + " ";
        return true;
    }
    IInputParams* GetInputParams() override { return m_Params; }

    std::string TakeCalls() { return std::exchange(m_Calls, {}); }
    void Add(const std::string& file) { m_Home.Write(file, "<Preset/>"); }
    CPresetLists MakeLists(const DSP::ILegacyPresets& legacies = CLegacies(0)) {
        return CPresetLists(*this, legacies, CTestPaths());
    }
    // Counts the places.
    static std::string List(const CPresetFolder& folder, const IPresets& presets, int& next) {
        std::string text = folder.GetName() + std::string("{");
        for (int i = 0; i < folder.GetFoldersCount(); ++i)
            text += List(folder.GetFolder(i), presets, next);
        for (int i = 0; i < folder.GetItemsCount(); ++i) {
            EXPECT_EQ(folder.GetItem(i), next++);
            text += std::string("(") + presets.GetElement(folder.GetItem(i)).GetName() + ")";
        }
        return text + "}";
    }
    std::string List(CPresetLists& lists) {
        int factory = 0, user = 0;
        return List(lists.GetFactoryFolder(), lists.GetPresets(), factory) +
               List(lists.GetUserFolder(), lists.GetUserPresets(), user);
    }

    const CTemporaryHome m_Home;
    std::function<void()> m_OnCurrentChanged = [] {};
    std::string m_Calls;
    IInputParams* m_Params = nullptr;
};

TEST_F(Presets, AreListedAsTheyLieInTheirFolders) {
    // One of each in a folder, so that the order is known; and what is no preset.
    for (const std::string file :
         {"a.preset", "b/b.c.preset", "b/c/.preset", "b/c/d.preset/\xff.preset",
          "b/c/d.preset/e/.preset.preset", "no.PRESET", "b/x.preset.bak", "b/c/preset",
          "b/c/d.preset/e/f/no.presets"})
        Add("user/Presets/" + file);
    CPresetLists lists = MakeLists();
    EXPECT_EQ(List(lists), "Factory Presets{}"
                           "User Presets{b{c{d.preset{e{f{}(.preset)}(\xff)}()}(b.c)}(a)}");
}

TEST_F(Presets, EndWhereLinksLeadRound) {
    Add("user/Presets/a.preset");
    const fs::path user = m_Home.In("user/Presets");
    fs::create_directory_symlink(".", user / "loop");
    fs::create_symlink("self", user / "self");
    CPresetLists lists = MakeLists();
    EXPECT_EQ(List(lists), "Factory Presets{}User Presets{loop{}(a)}");
    // Twelve folders that lead to each other: more ways than anyone can walk.
    for (int i = 0; i < 144; ++i) {
        const std::string folder = std::to_string(i / 12);
        Add("user/Presets/" + folder + "/x.preset");
        fs::create_directory_symlink("../" + std::to_string(i % 12),
                                     user / folder / std::to_string(i));
    }
    lists.Refresh();
    EXPECT_GT(lists.GetCount(), 1);
}

TEST_F(Presets, HaveTheirDefaultInTheRootsAlone) {
    for (const char* file : {"user/Presets/in/Default.preset", "user/Presets/default.preset",
                             "data/Presets/in/Default.preset"})
        Add(file);
    EXPECT_EQ(MakeLists().GetDefaultPreset(), nullptr);
    Add("data/Presets/Default.preset");
    CPresetLists lists = MakeLists();
    for (const std::string folder : {"data", "user", "data"}) {
        if (folder == "user")
            Add("user/Presets/Default.preset");
        else
            fs::remove(m_Home.In("user/Presets/Default.preset"));
        lists.Refresh();
        lists.GetDefaultPreset()->Apply();
        EXPECT_EQ(TakeCalls().substr(1), "Default" + folder + "/Presets/Default.preset ");
    }
}

TEST_F(Presets, CountTheFactorysBeforeTheUsers) {
    CPresetLists empty = MakeLists();
    for (const int index : {-2, 0, 1})
        EXPECT_EQ(empty.WrapIndex(index), 0) << "without presets";
    EXPECT_EQ(empty.FindByIndex(0), nullptr);
    for (const char* file :
         {"data/Presets/f.preset", "user/Presets/in/s.preset", "user/Presets/s.preset"})
        Add(file);
    CPresetLists three = MakeLists();
    EXPECT_TRUE(!three.FindByIndex(-1) && !three.FindByIndex(3));
    for (int i = 0; i < 3; ++i) {
        if (i == 2)
            m_OnCurrentChanged = [&] {
                fs::remove_all(m_Home.In("user"));
                three.Refresh(); // While one of them is being applied.
            };
        three.FindByIndex(i)->Apply();
    }
    EXPECT_EQ(TakeCalls(), "0fdata/Presets/f.preset 1suser/Presets/in/s.preset "
                           "2suser/Presets/s.preset ");
    EXPECT_EQ(three.GetCount(), 1);
}

TEST_F(Presets, OfTheFilterSetItsParameters) {
    Add("data/Presets/hidden.preset");
    Add("user/Presets/u.preset");
    CLegacies legacies(4);
    for (int i = 0; i < 4; ++i)
        legacies[i].m_Kind = i % 3;
    legacies[0].m_Values = {5.0, 0.0, 7.0, 9.0, 9.0};
    legacies[1].m_Values = {1.0, 0.0, -1.0, 1.0, 1.0};
    legacies[2].m_Values = {1.0, 1.0, 1.0};
    legacies[3].m_Values = {1.0};
    CPresetLists lists = MakeLists(legacies);
    EXPECT_EQ(List(lists), "Factory Presets{(legacy)(legacy)(legacy)(legacy)}User Presets{(u)}");
    lists.FindByIndex(3)->Apply(); // Without a host.
    EXPECT_EQ(TakeCalls(), "3legacy");

    CoreUtilities::TCollection<CCaptureParam, ICaptureParam> params(4);
    m_Params = &params;
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
