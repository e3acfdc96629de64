// The state of an instance as presets, sessions and undo hold it: what comes back, what old and
// damaged documents give, and how the lists of presets move.
#include "plugin/PluginTestFilter.h"
#include "plugin/TestHost.h"

#include "dsp/PluginsFilters/DualCairnEQ.h"
#include "math/Constant.h"
#include "serialization/history/HistoryManager.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace Lathe::Audio::Plugin {
namespace {

std::string TakeText(char* text) {
    return std::unique_ptr<char[]>(text).get();
}

class State : public testing::Test {
protected:
    State() : m_Host(MakeFilter()) {
        m_Host.Connect();
        m_Host.Prepare();
    }

    std::unique_ptr<DSP::IFilter> MakeFilter() {
        STestFilterSetup setup;
        setup.m_HasState = true;
        auto filter = std::make_unique<CPluginTestFilter>(setup);
        m_Filter = filter.get();
        return filter;
    }
    auto& GetText() { return m_Host->GetConnections().GetInputStrings()->GetElement(0); }
    std::string GetName() { return TakeText(m_Host->GetCurrentPresetName()); }
    double GetCurve() {
        auto& curve = m_Host->GetConnections().GetInputCurves()->GetElement(0);
        return std::unique_ptr<Math::IFunction>(curve.GetValue())->Evaluate(0.0);
    }
    // Everything off its default.
    void MoveAll() {
        m_Host.SetParam(0, 1.0);
        m_Host.SetParam(1, 1.75);
        GetText().SetValue("moved");
        m_Host->GetConnections().GetInputCurves()->GetElement(0).SetValue(
            Math::CConstantFunction(7.0));
        m_Filter->m_State = 9;
        m_Host->GetConnections().GetMIDIInputDefault()->SetValue(false);
        m_Host->GetMIDIController().GetInputSettings()[1].SetNumber(77);
    }
    void CheckMoved() {
        EXPECT_EQ(m_Host.GetParam(0), 1.0);
        EXPECT_EQ(m_Host.GetParam(1), 1.75);
        EXPECT_EQ(TakeText(GetText().GetValue()), "moved");
        EXPECT_EQ(GetCurve(), 7.0);
        EXPECT_EQ(m_Filter->m_State, 9);
        EXPECT_EQ(m_Host->GetMIDIController().GetInputSettings()[1].GetNumber(), 77);
    }
    // All but the filter's own state, which has no default.
    void CheckDefaults() {
        EXPECT_EQ(m_Host.GetParam(0), 0.0);
        EXPECT_EQ(m_Host.GetParam(1), 1.0);
        EXPECT_EQ(TakeText(GetText().GetValue()), "none");
        EXPECT_EQ(GetCurve(), 0.0);
    }
    std::string PathOf(const char* preset) const { return m_Home.In("user/Presets/") + preset; }
    void WritePreset(const char* file, double level) {
        const std::string name = std::filesystem::path(file).stem();
        m_Home.Write(std::string("user/Presets/") + file,
                     "<Preset version=\"4\" progName=\"" + name + "\"><inputParams p1=\"" +
                         std::to_string(level) + "\"/></Preset>");
    }

    CTemporaryHome m_Home;
    CPluginTestFilter* m_Filter = nullptr;
    CTestHost m_Host;
};

TEST_F(State, ComesBackWhole) {
    const std::string before = m_Host.GetState();
    MoveAll();
    const std::string moved = m_Host.GetState();
    ASSERT_TRUE(m_Host.SetState(before));
    CheckDefaults();
    EXPECT_TRUE(m_Host->GetConnections().GetMIDIInputDefault()->GetValue());
    EXPECT_EQ(m_Filter->m_State, 0);
    ASSERT_TRUE(m_Host.SetState(moved));
    CheckMoved();
    EXPECT_EQ(m_Host.GetState(), moved);
}

TEST_F(State, WritesItsKeysInOrder) {
    const std::string state = m_Host.GetState();
    std::size_t place = 0;
    for (const char* key :
         {"<Preset ", "version=\"4\"", "progName=\"Default Settings\"",
          "MIDIInputDefault=", "MIDIOutputDefault=", "<inputParams count=\"2\"", " p0=\"0",
          " p1=\"1", "<inputStrings count=\"1\" s0=\"none\"", "<inputCurves ", "<inputSurfaces ",
          "<inputCustomProperties ", "<internalDSPState ", "<model", "<GUI"}) {
        const std::size_t found = state.find(key, place);
        EXPECT_NE(found, std::string::npos) << key << " in " << state;
        place = found;
    }
    EXPECT_EQ(state.find("MIDIInputSettings"), std::string::npos);
}

TEST_F(State, OldAndForeignDocumentsGiveDefaults) {
    MoveAll();
    const std::string moved = m_Host.GetState();
    const auto withVersion = [&](const char* version) {
        std::string text = moved;
        return text.replace(text.find("version=\"4\""), 11, version);
    };
    // Before version 3 only numbers are read, and before 4 the filter keeps its own state.
    for (const char* version : {"", "version=\"2\""}) {
        MoveAll();
        m_Filter->m_State = 5;
        ASSERT_TRUE(m_Host.SetState(withVersion(version)));
        EXPECT_EQ(m_Host.GetParam(1), 1.75);
        EXPECT_EQ(TakeText(GetText().GetValue()), "none");
        EXPECT_EQ(m_Filter->m_State, 5);
    }
    ASSERT_TRUE(m_Host.SetState(withVersion("version=\"3\"")));
    EXPECT_EQ(TakeText(GetText().GetValue()), "moved");
    EXPECT_EQ(m_Filter->m_State, 5);

    MoveAll();
    ASSERT_TRUE(m_Host.SetState("<Something else=\"1\"><other/></Something>"));
    CheckDefaults();
    EXPECT_EQ(GetName(), "Default");

    ASSERT_TRUE(
        m_Host.SetState("<Preset version=\"4\"><inputParams count=\"2000000000\" p1=\"1.5\" "
                        "p9=\"3\"/></Preset>"));
    EXPECT_EQ(m_Host.GetParam(1), 1.5);
}

// Each is refused or falls to defaults, and audio goes on.
TEST_F(State, SurvivesHostileDocuments) {
    MoveAll();
    const std::string good = m_Host.GetState();
    std::vector<std::string> documents;
    for (std::size_t length = 0; length < good.size(); length += 37)
        documents.push_back(good.substr(0, length));
    for (std::size_t place = 0; place < good.size(); place += 11) {
        documents.push_back(good);
        documents.back()[place] ^= 1;
    }
    std::string nested;
    for (int depth = 0; depth < 1000000; ++depth)
        nested += "<a>";
    documents.push_back(nested);
    documents.push_back("<Preset progName=\"" + std::string(100'000'000, 'x') + "\"/>");
    for (const char* number : {"nan", "inf", "-inf", "1e999", "-1e308", "text", ""})
        documents.push_back("<Preset version=\"4\"><inputParams count=\"2\" p0=\"" +
                            std::string(number) + "\" p1=\"" + number +
                            "\"/><inputCurves count=\"" + number + "\" obj0=\"" + number +
                            "\"/><inputStrings><s0/></inputStrings></Preset>");
    for (const std::string& document : documents) {
        m_Host.SetState(document);
        m_Host.Block();
        const double level = m_Host.GetParam(1);
        EXPECT_TRUE(level >= 0.0 && level <= 2.0) << level << " from " << document.substr(0, 200);
        ASSERT_TRUE(std::isfinite(m_Host.m_OutputSamples[0][63])) << document.substr(0, 200);
    }
    ASSERT_TRUE(m_Host.SetState(good));
    CheckMoved();
}

TEST_F(State, UndoGoesBackStepByStepAndTouchesNothingElse) {
    Serialization::IHistoryManager& history = m_Host->GetHistory();
    history.UpdateCurrentState();
    EXPECT_FALSE(history.CanUndo());
    m_Host.SetParam(1, 0.5);
    history.RecordState();
    GetText().SetValue("second");
    history.RecordState();
    history.RecordState(); // Nothing has moved since.

    CCountCommand levelMoved;
    m_Host.m_Inputs.GetElement(1).GetBeginCaptureEvent().AddCommand(levelMoved);
    history.Undo();
    EXPECT_EQ(TakeText(GetText().GetValue()), "none");
    EXPECT_EQ(levelMoved.m_Count, 0);
    history.Undo();
    EXPECT_EQ(m_Host.GetParam(1), 1.0);
    EXPECT_EQ(levelMoved.m_Count, 1);
    EXPECT_FALSE(history.CanUndo());
    history.Redo();
    history.Redo();
    EXPECT_EQ(m_Host.GetParam(1), 0.5);
    EXPECT_EQ(TakeText(GetText().GetValue()), "second");
    EXPECT_FALSE(history.CanRedo());
    m_Host.m_Inputs.GetElement(1).GetBeginCaptureEvent().RemoveCommand(levelMoved);
}

TEST_F(State, PresetsAreSavedAndLoadedUnderTheirNames) {
    MoveAll();
    CCountCommand changed;
    m_Host->GetPresetChangedEvent().AddCommand(changed);
    ASSERT_TRUE(m_Host->SavePreset(PathOf("My Voice.preset").c_str()));
    EXPECT_EQ(changed.m_Count, 1);
    EXPECT_EQ(GetName(), "My Voice");
    ASSERT_EQ(m_Host->GetUserPresets().GetCount(), 1);
    ASSERT_TRUE(m_Host.SetState("<Preset/>"));
    ASSERT_TRUE(m_Host->LoadPreset(PathOf("My Voice.preset").c_str()));
    CheckMoved();
    EXPECT_EQ(GetName(), "My Voice"); // The file holds its own name.

    // What can't be written or read changes nothing else.
    EXPECT_FALSE(m_Host->SavePreset(m_Home.In("nowhere/x.preset").c_str()));
    EXPECT_FALSE(m_Host->SavePreset(nullptr));
    EXPECT_FALSE(m_Host->LoadPreset(PathOf("missing.preset").c_str()));
    m_Home.Write("user/Presets/broken.preset", "<Preset version=\"4\"");
    EXPECT_FALSE(m_Host->LoadPreset(PathOf("broken.preset").c_str()));
    CheckMoved();
    m_Host->GetPresetChangedEvent().RemoveCommand(changed);
}

TEST_F(State, NextAndPreviousGoRound) {
    m_Host->NextPreset();
    EXPECT_EQ(GetName(), "Default Settings"); // There is none.
    WritePreset("a.preset", 0.25);
    WritePreset("sub/b.preset", 0.5);
    m_Host->Refresh();
    // From no preset at all, the first one back is the last.
    std::vector<std::string> names;
    for (int i = 0; i < 3; ++i) {
        m_Host->PreviousPreset();
        names.push_back(GetName());
    }
    EXPECT_NE(names[0], names[1]);
    EXPECT_EQ(names[0], names[2]);
    EXPECT_EQ(m_Host.GetParam(1), names[2] == "a" ? 0.25 : 0.5);
    m_Host->NextPreset();
    EXPECT_EQ(GetName(), names[1]);
}

TEST_F(State, TheUsersDefaultIsWhatAnInstanceStartsFrom) {
    m_Host.SetParam(1, 0.125);
    ASSERT_TRUE(m_Host->SaveAsDefault());
    EXPECT_EQ(GetName(), "Default");
    m_Host.SetParam(1, 2.0);
    m_Host->LoadDefault();
    EXPECT_EQ(m_Host.GetParam(1), 0.125);
    m_Host.SetParam(1, 2.0);
    m_Host.Prepare(48000.0, 512, false);
    EXPECT_EQ(m_Host.GetParam(1), 2.0);
    m_Host.Prepare();
    EXPECT_EQ(m_Host.GetParam(1), 0.125);
    m_Host->ResetDefault();
    m_Host.Prepare();
    EXPECT_EQ(m_Host.GetParam(1), 1.0);
}

} // namespace
} // namespace Lathe::Audio::Plugin
