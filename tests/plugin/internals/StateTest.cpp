// The state of an instance as presets, sessions and undo hold it: what comes back, what old and
// damaged documents give, and how the presets move.
#include "datamodel/Journal.h"
#include "math/Constant.h"
#include "plugin/TestHost.h"
#include "serialization/history/HistoryManager.h"

namespace Lathe::Audio::Plugin {
namespace {

class State : public testing::Test, protected SRig {
protected:
    State() : SRig({.m_HasState = true}) { m_Host.Prepare(); }

    std::string GetName() { return TakeText(m_Host->GetCurrentPresetName()); }
    // The numbers, the text, the curve and the filter's own state.
    std::string Show() {
        auto& curve = Get().GetInputCurves()->GetElement(0);
        const double y = std::unique_ptr<Math::IFunction>(curve.GetValue())->Evaluate(0.0);
        std::ostringstream text;
        text << m_Host.GetParam(0) << ' ' << m_Host.GetParam(1) << ' '
             << TakeText(GetText().GetValue()) << ' ' << y << ' ' << m_Filter->m_State;
        return text.str();
    }
    // Everything off its default.
    std::string Move() {
        m_Host.SetParam(0, 1.0);
        m_Host.SetParam(1, 1.75);
        GetText().SetValue("moved");
        Get().GetInputCurves()->GetElement(0).SetValue(Math::CConstantFunction(7.0));
        m_Filter->m_State = 9;
        Get().GetMIDIInputDefault()->SetValue(false);
        Get().GetMIDIOutputDefault()->SetValue(false);
        m_Host->GetMIDIController().GetInputSettings()[1].SetNumber(77);
        m_Host->GetMIDIController().GetOutputSettings()[1].SetNumber(78);
        return m_Host.GetState();
    }
    std::string PathOf(const char* preset) const { return m_Home.In("user/Presets/") + preset; }
};

constexpr const char* Moved = "1 1.75 moved 7 9";

TEST_F(State, ComesBackWhole) {
    const std::string before = m_Host.GetState();
    const std::string moved = Move();
    ASSERT_TRUE(m_Host.SetState(before));
    EXPECT_EQ(Show(), "0 1 none 0 0");
    EXPECT_EQ(m_Host.GetState(), before);
    ASSERT_TRUE(m_Host.SetState(moved));
    EXPECT_EQ(Show(), Moved);
    EXPECT_EQ(m_Host.GetState(), moved);
    std::size_t place = 0;
    for (const char* key :
         {"<Preset ", "version=\"4\"", "progName=\"Default Settings\"",
          "MIDIInputDefault=", "MIDIOutputDefault=", "<MIDIInputSettings", "number=\"77\"",
          "<MIDIOutputSettings", "number=\"78\"", "<inputParams count=\"2\" p0=\"1\" p1=\"1.75\"",
          "<inputStrings count=\"1\" s0=\"moved\"", "<inputCurves ", "<inputSurfaces ",
          "<inputCustomProperties ", "<internalDSPState ", "<model", "<GUI"}) {
        place = moved.find(key, place);
        EXPECT_NE(place, std::string::npos) << key << " in " << moved;
    }
}

TEST_F(State, OldAndForeignDocumentsGiveDefaults) {
    const std::string moved = Move();
    // Before version 3 only numbers are read, and before 4 the filter keeps its own state.
    for (const auto& [version, result] : {std::pair("", "1 1.75 none 0 5"),
                                          {"version=\"2\"", "1 1.75 none 0 5"},
                                          {"version=\"3\"", "1 1.75 moved 7 5"}}) {
        Move();
        m_Filter->m_State = 5;
        std::string text = moved;
        ASSERT_TRUE(m_Host.SetState(text.replace(text.find("version=\"4\""), 11, version)));
        EXPECT_EQ(Show(), result);
    }
    ASSERT_TRUE(m_Host.SetState("<Something else=\"1\"><other/></Something>"));
    EXPECT_EQ(Show(), "0 1 none 0 5"); // The filter's own state has no default.
    EXPECT_EQ(GetName(), "Default");
}

// Each is refused or falls to defaults, and audio goes on.
TEST_F(State, SurvivesHostileDocuments) {
    const std::string good = Move();
    std::string nested;
    for (int depth = 0; depth < 1000000; ++depth)
        nested += "<a>";
    std::vector<std::string> documents{nested, "<Preset progName=\"" +
                                                   std::string(100'000'000, 'x') + "\"/>"};
    for (std::size_t length = 0; length < good.size(); length += 37)
        documents.push_back(good.substr(0, length));
    for (std::size_t place = 0; place < good.size(); place += 11) {
        documents.push_back(good);
        documents.back()[place] ^= 1;
    }
    for (const std::string number : {"nan", "inf", "-inf", "1e999", "-1e308", "text", ""})
        documents.push_back("<Preset version=\"4\"><inputParams count=\"2\" p0=\"" + number +
                            "\" p1=\"" + number + "\"/><inputCurves count=\"" + number +
                            "\" obj0=\"" + number +
                            "\"/><inputStrings><s0/></inputStrings></Preset>");
    for (const std::string& document : documents) {
        m_Host.SetState(document);
        m_Host.Block();
        const double level = m_Host.GetParam(1);
        EXPECT_TRUE(level >= 0.0 && level <= 2.0) << level << " from " << document.substr(0, 200);
        ASSERT_TRUE(std::isfinite(m_Host.m_OutputSamples[0][63])) << document.substr(0, 200);
    }
    ASSERT_TRUE(m_Host.SetState(good));
    EXPECT_EQ(Show(), Moved);
}

TEST_F(State, UndoGoesBackStepByStepAndTouchesNothingElse) {
    Serialization::IHistoryManager& history = m_Host->GetHistory();
    history.UpdateCurrentState();
    m_Host.SetParam(1, 0.5);
    history.RecordState();
    GetText().SetValue("second");
    history.RecordState();
    history.RecordState(); // Nothing has moved since.
    DataModel::CJournal journal(m_Host.m_Inputs[1]);
    history.Undo();
    EXPECT_EQ(Show(), "0 0.5 none 0 0");
    EXPECT_EQ(journal.Take(), "");
    history.Undo();
    EXPECT_EQ(Show(), "0 1 none 0 0");
    EXPECT_EQ(journal.Take(), "bve");
    EXPECT_FALSE(history.CanUndo());
    history.Redo();
    history.Redo();
    EXPECT_EQ(Show(), "0 0.5 second 0 0");
    EXPECT_FALSE(history.CanRedo());
}

TEST_F(State, PresetsAreSavedAndLoadedUnderTheirNames) {
    Move();
    DataModel::CJournal journal(m_Host->GetPresetChangedEvent());
    ASSERT_TRUE(m_Host->SavePreset(PathOf("My Voice.preset").c_str()));
    EXPECT_EQ(journal.Take() + GetName(), "cMy Voice");
    ASSERT_EQ(m_Host->GetUserPresets().GetCount(), 1);
    ASSERT_TRUE(m_Host.SetState("<Preset/>"));
    ASSERT_TRUE(m_Host->LoadPreset(PathOf("My Voice.preset").c_str()));
    EXPECT_EQ(GetName(), "My Voice"); // The file holds its own name.

    // What can't be written or read changes nothing else.
    m_Home.Write("user/Presets/broken.preset", "<Preset version=\"4\"");
    for (const char* path : {"nowhere/x.preset", static_cast<const char*>(nullptr)})
        EXPECT_FALSE(m_Host->SavePreset(path));
    for (const char* name : {"missing.preset", "broken.preset"})
        EXPECT_FALSE(m_Host->LoadPreset(PathOf(name).c_str()));
    EXPECT_EQ(Show(), Moved);
}

TEST_F(State, NextAndPreviousGoRound) {
    m_Host->NextPreset();
    EXPECT_EQ(GetName(), "Default Settings"); // There is none.
    for (const char* file : {"a", "sub/b"})
        m_Home.Write(std::string("user/Presets/") + file + ".preset",
                     std::string("<Preset version=\"4\" progName=\"") + file + "\"/>");
    m_Host->Refresh();
    // From no preset at all, the first one back is the last.
    std::string names;
    for (int i = 0; i < 3; ++i) {
        m_Host->PreviousPreset();
        names += GetName() + ' ';
    }
    m_Host->NextPreset();
    EXPECT_EQ(names + GetName(), "a sub/b a sub/b");
}

TEST_F(State, TheUsersDefaultIsWhatAnInstanceStartsFrom) {
    m_Host.SetParam(1, 0.125);
    ASSERT_TRUE(m_Host->SaveAsDefault());
    EXPECT_EQ(GetName(), "Default");
    m_Host.SetParam(1, 2.0);
    m_Host->LoadDefault();
    EXPECT_EQ(m_Host.GetParam(1), 0.125);
    m_Host.SetParam(1, 2.0);
    for (const bool reset : {false, true}) {
        m_Host.Prepare(48000.0, 512, reset);
        EXPECT_EQ(m_Host.GetParam(1), reset ? 0.125 : 2.0);
    }
    m_Host->ResetDefault();
    m_Host.Prepare();
    EXPECT_EQ(m_Host.GetParam(1), 1.0);
}

} // namespace
} // namespace Lathe::Audio::Plugin
