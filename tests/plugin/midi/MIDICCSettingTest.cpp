// Proves that MIDI settings come back from every stream and from old documents, that their events
// fire once and only for a change, and what lists of them hold at first.
#include "datamodel/Journal.h"
#include "dsp/FilterInfos.h"
#include "plugin/midi/MIDICCSettings.h"
#include "serialization/CollectionSerializers.h"
#include "serialization/Streams.h"

#include <cmath>
#include <limits>
#include <sstream>

namespace Lathe::Audio::Plugin {

namespace {

using DataModel::CJournal;
using Math::EParamValueCurve;
using namespace Serialization;
using namespace Serialization::Tests;

// Channel, number, MIDI, automation, curve, minimum, maximum, type.
std::string Describe(const IMIDICCSetting& setting) {
    std::ostringstream text;
    text << setting.GetChannel() << ' ' << setting.GetNumber() << ' ' << setting.IsMIDIEnabled()
         << ' ' << setting.IsAutomationEnabled() << ' ' << static_cast<int>(setting.GetCurve())
         << ' ' << setting.GetMin() << ' ' << setting.GetMax() << ' '
         << static_cast<int>(setting.GetType());
    return text.str();
}

// Nothing is a default, but for the argument of the constructor.
void Fill(IMIDICCSetting& setting) {
    setting.SetChannel(5);
    setting.SetNumber(6);
    setting.SetMIDIEnabled(true);
    setting.SetAutomationEnabled(false);
    setting.SetCurve(EParamValueCurve::Exp3);
    setting.SetMin(1.5);
    setting.SetMax(-2.5);
    setting.SetType(EMIDIControlType::Note);
}

// The attributes of a document, whether reading it over a filled setting succeeds, and the result.
struct SDocument {
    const char* m_Attributes;
    bool m_Succeeds;
    const char* m_Result;
};

template <class TDocument>
void CheckRead(const SDocument& test) {
    SCOPED_TRACE(test.m_Attributes);
    TDocument document("Root");
    ASSERT_TRUE(Parse(document, std::string("<s ") + test.m_Attributes + "/>"));
    CMIDICCSetting setting(true);
    Fill(setting);
    const std::string before = Describe(setting);
    CJournal journal(setting.GetChangedEvent());
    EXPECT_EQ(setting.DeSerialize(document), test.m_Succeeds);
    EXPECT_EQ(Describe(setting), test.m_Result);
    EXPECT_EQ(journal.Take(), before == test.m_Result ? "" : "c");
}

CMIDICCSetting MakeWithMin(double min) {
    CMemDataObject stream;
    WriteValue(stream, "min", min);
    CMIDICCSetting setting;
    setting.DeSerialize(stream);
    return setting;
}

} // namespace

TEST(MIDICCSetting, ComesBackFromEveryStream) {
    ForEachStream([](auto& stream, const auto& reload) {
        for (int i = 0; i < 13; ++i) {
            CMIDICCSetting saved, loaded(true);
            Fill(saved);
            saved.SetMIDIEnabled(i % 2 == 0);
            saved.SetCurve(EParamValueCurve(i));
            saved.SetType(EMIDIControlType(i % 3));
            ASSERT_TRUE(stream.WriteObject("s", saved));
            reload();
            CJournal journal(loaded.GetChangedEvent());
            EXPECT_TRUE(stream.ReadObject("s", loaded) && stream.ReadObject("s", loaded));
            EXPECT_EQ(Describe(loaded), Describe(saved));
            EXPECT_EQ(journal.Take(), "c");
        }
    });
    CMIDICCSetting setting;
    setting.SetCurve(EParamValueCurve::SquareRoot);
    CXmlDataObject document("Root");
    EXPECT_TRUE(setting.Serialize(document));
    EXPECT_NE(GetText(document).find(
                  "channel=\"0\" version=\"3\" number=\"0\" midiEnabled=\"0\" "
                  "automationEnabled=\"0\" curve=\"Square Root\" min=\"0\" max=\"0\" type=\"CC\""),
              std::string::npos);
}

TEST(MIDICCSetting, ReadsDocumentsOfAllVersions) {
    const SDocument full[] = {
        {"version='3' channel='16' number='127' midiEnabled='0' automationEnabled='1' "
         "curve='Log' min='-3' max='4' type='CC' enabled='1'",
         true, "16 127 0 1 5 -3 4 0"},
        {"version='2' channel='1' number='2' enabled='0' curve='Linear' min='0' max='1' "
         "type='NoteOnOff' automationEnabled='0'",
         true, "1 2 0 1 6 0 1 1"},
        {"version='2' channel='1' number='2' midiEnabled='0' curve='Exp' min='0' max='1' type='CC'",
         false, "1 2 1 1 7 0 1 0"},
        {"version='1' channel='1' number='2' enabled='0' curve='Square' min='0' max='1' type='CC'",
         true, "1 2 0 1 8 0 1 2"},
        {"channel='1' number='2' enabled='0' curve='Exp0' min='0' max='1'", false,
         "1 2 0 1 9 0 1 2"},
        {"version='3' number='7'", false, "5 7 1 0 6 1.5 -2.5 2"},
        {"version='3' channel='99' number='-5' midiEnabled='1' automationEnabled='0' "
         "curve='linear' min='0' max='1' type='cc'",
         true, "99 -5 1 0 6 0 1 2"},
        {"version='3' channel='x' number='7' midiEnabled='1' automationEnabled='0' "
         "curve='Exp3' min='' max='-2.5' type='Note'",
         false, "5 7 1 0 12 1.5 -2.5 2"},
    };
    for (const SDocument& test : full)
        CheckRead<CXmlDataObject>(test);
    const SDocument changes[] = {
        {"", true, "5 6 1 0 12 1.5 -2.5 2"},
        {"number='9'", true, "5 9 1 0 12 1.5 -2.5 2"},
        {"version='1' enabled='0' midiEnabled='1' type='CC'", true, "5 6 1 0 12 1.5 -2.5 0"},
        {"curve='?'", true, "5 6 1 0 6 1.5 -2.5 2"},
    };
    for (const SDocument& test : changes)
        CheckRead<TChanges<CXmlDataObject>>(test);
}

TEST(MIDICCSetting, WritesNoNameForWhatHasNone) {
    for (const int curve : {-1, 13, std::numeric_limits<int>::max()}) {
        CMIDICCSetting setting;
        setting.SetCurve(EParamValueCurve(curve));
        CMemDataObject stream;
        EXPECT_TRUE(setting.Serialize(stream) && !stream.HasValue("curve")) << curve;
    }
    for (const int type : {-1, 3}) {
        CMIDICCSetting setting;
        setting.SetType(EMIDIControlType(type));
        CMemDataObject stream;
        EXPECT_FALSE(setting.Serialize(stream) || stream.HasValue("type")) << type;
        EXPECT_TRUE(stream.HasValue("max"));
    }
}

TEST(MIDICCSetting, RaisesOneEventForEachChange) {
    CMIDICCSetting setting(true);
    CJournal journal(setting.GetChangedEvent());
    Fill(setting);
    EXPECT_EQ(journal.Take(), "cccccccc");
    Fill(setting);
    setting.SetMin(NAN);
    EXPECT_EQ(journal.Take(), "");
    EXPECT_EQ(Describe(setting), "5 6 1 0 12 1.5 -2.5 2");

    // A number in place of a NaN that was read.
    CMIDICCSetting damaged = MakeWithMin(NAN);
    CJournal repairs(damaged.GetChangedEvent());
    damaged.SetMin(NAN);
    EXPECT_TRUE(std::isnan(damaged.GetMin()));
    damaged.SetMin(3.0);
    EXPECT_EQ(damaged.GetMin(), 3.0);
    EXPECT_EQ(repairs.Take(), "c");
}

TEST(MIDICCSetting, CopiesAllButItsSubscribers) {
    CMIDICCSetting source(true), assigned, byInterface;
    Fill(source);
    CJournal journal(source.GetChangedEvent());
    journal.Listen(assigned.GetChangedEvent(), 'a');
    journal.Listen(byInterface.GetChangedEvent(), 'i');
    for (int i = 0; i < 2; ++i) {
        assigned = source;
        byInterface.Copy(source);
    }
    CMIDICCSetting built(source);
    EXPECT_EQ(journal.Take(), "ai");
    built.SetNumber(1);
    built = source;
    EXPECT_EQ(journal.Take(), "");
    for (CMIDICCSetting* copy : {&assigned, &byInterface, &built})
        EXPECT_EQ(Describe(*copy), Describe(source));
    // What automation is for an old document goes with the object alone.
    assigned.DeSerialize(CMemDataObject());
    byInterface.DeSerialize(CMemDataObject());
    EXPECT_TRUE(assigned.IsAutomationEnabled() && !byInterface.IsAutomationEnabled());
}

TEST(MIDICCSettings, AreStoredAndCopiedAsFarAsBothListsReach) {
    CInputMIDICCSettings saved(3), loaded(4);
    CMIDICCSettings shorter(2);
    loaded.SetCount(200);
    EXPECT_EQ(Describe(loaded[199]), "0 0 0 1 6 0 0 0");
    EXPECT_EQ(Describe(shorter[1]), "0 0 0 0 6 0 0 0");
    for (int i = 0; i < 3; ++i) {
        Fill(saved[i]);
        saved[i].SetChannel(i);
    }
    CMemDataObject stream;
    EXPECT_TRUE(TVectorSerializer(saved, "item").Serialize(stream));
    EXPECT_FALSE(TVectorDeSerializer(loaded, "item").DeSerialize(stream));
    CopyMIDICCSettings(saved, shorter);
    CopyMIDICCSettings(shorter, saved);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(Describe(loaded[i]), Describe(saved[i]));
    EXPECT_EQ(Describe(shorter[1]), Describe(saved[1]));
    EXPECT_EQ(Describe(loaded[3]), "0 0 0 1 6 0 0 0");
}

TEST(MIDICCSettings, StartOnControllersOfTheirOwn) {
    for (const int count : {1, 128, 129, 2100}) {
        DSP::CParamInfos infos(count);
        CInputMIDICCSettings inputs(count);
        CMIDICCSettings outputs(count + 1);
        for (int i = 0; i < count; ++i) {
            infos[i].SetMin(-i);
            infos[i].SetMax(i);
            Fill(inputs[i]);
            Fill(outputs[i]);
        }
        CJournal journal(inputs[0].GetChangedEvent());
        FillInputMIDICCSettings(infos, inputs);
        FillOutputMIDICCSettings(infos, outputs);
        EXPECT_EQ(journal.Take(), "c");
        int channel = 1, number = 0;
        for (int i = 0; i < count; ++i) {
            const std::string range = " 6 " + std::to_string(-i) + ' ' + std::to_string(i) + " 0";
            const auto at = [&] { return std::to_string(channel) + ' ' + std::to_string(number); };
            const std::string input = count > 128 ? at() : "0 " + std::to_string(i);
            ASSERT_EQ(Describe(inputs[i]), input + " 0 1" + range);
            if (++number == 128) {
                number = 0;
                channel = channel == 16 ? 1 : channel + 1;
            }
            ASSERT_EQ(Describe(outputs[i]), at() + " 0 0" + range);
        }
        EXPECT_EQ(outputs[count].GetNumber(), 0);
    }
}

} // namespace Lathe::Audio::Plugin
