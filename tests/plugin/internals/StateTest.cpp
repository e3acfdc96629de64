// The state of an instance as presets, sessions and undo hold it: what comes back, what old and
// damaged documents give, and how the presets move.
#include "datamodel/Journal.h"
#include "plugin/TestHost.h"
#include "plugin/presets/InputValuesSerializers.h"
#include "serialization/history/HistoryManager.h"

namespace Lathe::Audio::Plugin {
namespace {

using namespace Serialization;
using namespace Serialization::Tests;
using DataModel::Objects::IDynamicPropertyValue;

class State : public testing::Test, protected SRig {
protected:
    State() : SRig({.m_HasState = true}) { m_Host.Prepare(); }

    std::string GetName() { return TakeText(m_Host->GetCurrentPresetName()); }
    // The numbers, the text, the curve, the surface, the property and the filter's own state.
    std::string Show() {
        std::ostringstream text;
        text << m_Host.GetParam(0) << ' ' << m_Host.GetParam(1) << ' '
             << TakeText(GetText().GetValue()) << ' '
             << ShowObjects(*Get().GetInputCurves(), *Get().GetInputSurfaces(),
                            *Get().GetInputCustomProperties())
             << ' ' << m_Filter->m_State;
        return text.str();
    }
    // Everything off its default.
    std::string Move() {
        m_Host.SetParam(0, 1.0);
        m_Host.SetParam(1, 1.75);
        GetText().SetValue("mo<\xc3\xa4> & \"v");
        SetObjects(Get(), 7.0, 8.0, 6.0);
        m_Filter->m_State = 9;
        Get().GetMIDIInputDefault()->SetValue(false);
        Get().GetMIDIOutputDefault()->SetValue(false);
        IMIDICCSetting& input = m_Host->GetMIDIController().GetInputSettings()[1];
        input.SetNumber(77);
        input.SetCurve(Math::EParamValueCurve::Exp);
        input.SetType(EMIDIControlType::Note);
        m_Host->GetMIDIController().GetOutputSettings()[1].SetNumber(78);
        return m_Host.GetState();
    }
};

constexpr const char* Moved = "1 1.75 mo<\xc3\xa4> & \"v 7 8 6 9";

TEST_F(State, ComesBackWhole) {
    ForEachStream([&](auto& stream, const auto& reload) {
        Move();
        ASSERT_TRUE(m_Host->SerializeState(stream));
        reload();
        m_Host->DeSerializeState(CMemDataObject());
        EXPECT_EQ(Show(), "0 1 none 0 0 1 9") << "the filter's own state has no default";
        m_Host->DeSerializeState(stream);
        EXPECT_EQ(Show(), Moved);
        m_Host->DeSerializeState(CChanges());
        EXPECT_EQ(Show(), Moved);
    });
    const std::string moved = Move();
    ASSERT_TRUE(m_Host.SetState("<Preset/>"));
    ASSERT_TRUE(m_Host.SetState(moved));
    EXPECT_EQ(m_Host.GetState(), moved);
    std::size_t place = 0;
    for (const char* key :
         {"<Preset ", "version=\"4\"", "progName=\"Default",
          "MIDIInputDefault=", "MIDIOutputDefault=", "<MIDIInputSettings", "number=\"77\"",
          "curve=\"Exp\"", "type=\"Note\"", "<MIDIOutputSettings", "number=\"78\"",
          "<inputParams count=\"2\" p0=\"1\" p1=\"1.75\"", "<inputStrings count=\"1\" s0='mo&lt;",
          "<inputCurves ", "<inputSurfaces ", "<inputCustomProperties ", "<internalDSPState ",
          "<model", "<GUI"}) {
        place = moved.find(key, place);
        EXPECT_NE(place, std::string::npos) << key << " in " << moved;
    }
}

TEST_F(State, OldAndForeignDocumentsGiveDefaults) {
    const std::string moved = Move();
    // Before version 3 only numbers are read, and before 4 the filter keeps its own state.
    for (const auto& [version, result] : {std::pair("", "1 1.75 none 0 0 1 5"),
                                          {"version=\"2\"", "1 1.75 none 0 0 1 5"},
                                          {"version=\"3\"", "1 1.75 mo<\xc3\xa4> & \"v 7 8 6 5"}}) {
        Move();
        m_Filter->m_State = 5;
        std::string text = moved;
        ASSERT_TRUE(m_Host.SetState(text.replace(text.find("version=\"4\""), 11, version)));
        EXPECT_EQ(Show(), result);
    }
    ASSERT_TRUE(m_Host.SetState("<Something else=\"1\"><other/></Something>"));
    EXPECT_EQ(Show(), "0 1 none 0 0 1 5"); // The filter's own state has no default.
    EXPECT_EQ(GetName(), "Default");
}

TEST_F(State, NumbersAreFiniteAndInRange) {
    // What is stored, and what it becomes of 0.5.
    const double cases[][2] = {{0.75, 0.75}, {7.0, 2.0},      {-1e300, 0.0},
                               {NAN, 1.0},   {INFINITY, 1.0}, {-INFINITY, 1.0}};
    THostParams<DataModel::Objects::ICaptureParam, CUnlimitedParam> params(
        m_Host->GetInputParamInfos());
    CInputParamsDeSerializer reader(params);
    for (const auto& [stored, result] : cases) {
        SCOPED_TRACE(stored);
        CMemDataObject stream;
        CChanges changes;
        EXPECT_TRUE(WriteValue(stream, "p1", stored) && WriteValue(changes, "p1", stored));
        EXPECT_TRUE(WriteValue(stream, "p0", 1.0) && WriteValue(stream, "count", 2000000000));
        params[1].SetValue(0.5);
        EXPECT_TRUE(reader.DeSerialize(changes));
        EXPECT_EQ(params[1].GetValue(), std::isfinite(stored) ? result : 0.5);
        EXPECT_EQ(reader.DeSerialize(stream), std::isfinite(stored));
        EXPECT_EQ(params[1].GetValue(), result);
    }
}

TEST_F(State, ObjectsOfUnknownClassOrNoneGetTheDefault) {
    const std::string known = std::string("<obj0 isNull='0' type='") + CTestProperty::ClassId() +
                              "'><content number='7'/></obj0>";
    // What 5 becomes, with the default 1, and whether the read succeeds.
    const std::tuple<std::string, double, bool> cases[] = {
        {known, 7.0, true},
        {known.substr(0, known.find("<content")) + "</obj0>", 1.0, false},
        {"<obj0 isNull='0' type='?'><content number='7'/></obj0>", 1.0, false},
        {"<obj0 isNull='1'/>", 1.0, true},
        {"<obj0><content number='7'/></obj0>", 1.0, false},
        {"<obj1 isNull='1'/>", 1.0, false}};
    auto& properties = *Get().GetInputCustomProperties();
    CInputCustomPropertiesDeSerializer reader(properties);
    for (const auto& [object, result, reads] : cases) {
        CXmlDataObject document("Root");
        ASSERT_TRUE(Parse(document, "<r count='-1' obj0='3'>" + object + "</r>"));
        properties.GetElement(0).SetValue(CTestProperty(5.0));
        EXPECT_EQ(reader.DeSerialize(document), reads) << object;
        const std::unique_ptr<IDynamicPropertyValue> value(properties.GetElement(0).GetValue());
        EXPECT_EQ(dynamic_cast<CTestProperty&>(*value).m_Number, result) << object;
    }
}

// Each is refused or falls to defaults, and audio goes on.
TEST_F(State, SurvivesHostileDocuments) {
    const std::string good = Move();
    std::vector<std::string> documents;
    for (std::size_t place = 0; place < good.size(); place += 11) {
        documents.push_back(good.substr(0, place));
        documents.push_back(good);
        documents.back()[place] ^= 1;
    }
    documents.push_back("<Preset version='4'><inputParams count='nan' p0='text' p1='1e999'/>"
                        "<inputCurves count='-1' obj0='inf'/><inputStrings><s0/></inputStrings>"
                        "<inputSurfaces count='2000000000'/></Preset>");
    std::string huge;
    for (int i = 0; i < 1'000'000; ++i)
        huge += "<a>"; // Nested, and never closed.
    documents.push_back(huge);
    huge = "<Preset progName=\"";
    huge.resize(100'000'000, 'x');
    documents.push_back(huge + "\"/>");
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
    IHistoryManager& history = m_Host->GetHistory();
    history.UpdateCurrentState();
    m_Host.SetParam(1, 0.5);
    history.RecordState();
    GetText().SetValue("second");
    SetObjects(Get(), 7.0, 8.0, 6.0);
    history.RecordState();
    history.RecordState(); // Nothing has moved since.
    DataModel::CJournal journal(m_Host.m_Inputs[1]);
    history.Undo();
    EXPECT_EQ(Show(), "0 0.5 none 0 0 1 0");
    EXPECT_EQ(journal.Take(), "");
    history.Undo();
    EXPECT_EQ(Show(), "0 1 none 0 0 1 0");
    EXPECT_EQ(journal.Take(), "bve");
    EXPECT_FALSE(history.CanUndo());
    history.Redo();
    history.Redo();
    EXPECT_EQ(Show(), "0 0.5 second 7 8 6 0");
    EXPECT_FALSE(history.CanRedo());
}

TEST_F(State, NextAndPreviousGoRound) {
    m_Host->NextPreset();
    EXPECT_EQ(GetName(), "Default Settings"); // There is none.
    for (const char* file : {"a", "sub/b"})
        m_Home.Write(std::string("user/Presets/") + file + ".preset",
                     std::string("<Preset version=\"4\" progName=\"") + file + "\"/>");
    m_Host->Refresh();
    DataModel::CJournal journal(m_Host->GetPresetChangedEvent());
    // From no preset at all, the first one back is the last.
    std::string names;
    for (const char step : std::string("<<<>>")) {
        step == '<' ? m_Host->PreviousPreset() : m_Host->NextPreset();
        names += GetName() + ' ';
    }
    EXPECT_EQ(names, "a sub/b a sub/b a ");
    EXPECT_NE(journal.Take(), "");
}

TEST_F(State, TheUsersDefaultIsWhatAnInstanceStartsFrom) {
    m_Host.SetParam(1, 0.125);
    ASSERT_TRUE(m_Host->SaveAsDefault());
    EXPECT_EQ(GetName(), "Default");
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
