// Proves that MIDI settings come back from every stream and from old documents, that their events
// fire once and only for a change, and what lists of them hold at first.
#include "datamodel/Journal.h"
#include "dsp/FilterInfos.h"
#include "plugin/midi/MIDICCSettings.h"
#include "serialization/CollectionSerializers.h"
#include "serialization/Streams.h"

#include <cmath>
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

// What becomes of a filled setting, behind whether the read succeeds.
template <class TDocument>
std::string Read(const std::string& attributes) {
    TDocument document("Root");
    EXPECT_TRUE(Parse(document, "<s " + attributes + "/>"));
    CMIDICCSetting setting(true);
    Fill(setting);
    const std::string before = Describe(setting);
    CJournal journal(setting.GetChangedEvent());
    const std::string result = setting.DeSerialize(document) ? "reads " : "fails ";
    EXPECT_EQ(journal.Take(), Describe(setting) == before ? "" : "c");
    return result + Describe(setting);
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
}

TEST(MIDICCSetting, ReadsDocumentsOfAllVersions) {
    const std::string v3 = "version='3' midiEnabled='0' automationEnabled='1' ",
                      v2 = "version='2' ", off = "enabled='0' ", type = "type='NoteOnOff'";
    const std::pair<std::string, const char*> full[] = {
        {v3 + "enabled='1' curve='Log' " + type, "reads 99 -5 0 1 5 -3 4 1"},
        {v3 + "curve='log' type='cc'", "reads 99 -5 0 1 6 -3 4 2"},
        {v3 + type, "fails 99 -5 0 1 6 -3 4 1"},
        {v2 + off + "automationEnabled='0' curve='Exp' " + type, "reads 99 -5 0 1 7 -3 4 1"},
        {v2 + "midiEnabled='0' curve='Linear' " + type, "fails 99 -5 1 1 6 -3 4 1"},
        {"version='1' " + off + "curve='Square' " + type, "reads 99 -5 0 1 8 -3 4 2"},
        {off + "curve='Exp0'", "fails 99 -5 0 1 9 -3 4 2"},
    };
    for (const auto& [attributes, result] : full)
        EXPECT_EQ(Read<CXmlDataObject>("channel='99' number='-5' min='-3' max='4' " + attributes),
                  result);
    EXPECT_EQ(Read<CXmlDataObject>("version='3' max='7'"), "fails 5 6 1 0 6 1.5 7 2");
    using CXmlChanges = TChanges<CXmlDataObject>;
    EXPECT_EQ(Read<CXmlChanges>("number='9'"), "reads 5 9 1 0 12 1.5 -2.5 2");
    EXPECT_EQ(Read<CXmlChanges>("version='1' enabled='0' type='CC'"),
              "reads 5 6 1 0 12 1.5 -2.5 0");
}

TEST(MIDICCSetting, WritesNoNameForWhatHasNone) {
    for (const int number : {-1, 13}) {
        CMIDICCSetting setting;
        setting.SetCurve(EParamValueCurve(number));
        CMemDataObject stream;
        EXPECT_TRUE(setting.Serialize(stream) && !stream.HasValue("curve")) << number;
        setting.SetType(EMIDIControlType(number));
        EXPECT_FALSE(setting.Serialize(stream)) << number;
    }
}

TEST(MIDICCSetting, RaisesOneEventForEachChangeAndForEachCopy) {
    CMIDICCSetting source(true), assigned, byInterface;
    CJournal journal(source.GetChangedEvent());
    journal.Listen(assigned.GetChangedEvent(), 'a');
    journal.Listen(byInterface.GetChangedEvent(), 'i');
    for (const char* events : {"ccccccccai", ""}) {
        Fill(source);
        source.SetMin(NAN);
        assigned = source;
        byInterface.Copy(source);
        EXPECT_EQ(journal.Take(), events);
        EXPECT_EQ(Describe(assigned), "5 6 1 0 12 1.5 -2.5 2");
        EXPECT_EQ(Describe(byInterface), Describe(assigned));
    }
    CMIDICCSetting(source).SetNumber(1);
    EXPECT_EQ(journal.Take(), ""); // It has no subscribers.
    // What automation is for an old document goes with the object alone. A NaN that was read gives
    // way to a number.
    CMemDataObject old;
    WriteValue(old, "min", std::nan(""));
    EXPECT_FALSE(assigned.DeSerialize(old) || byInterface.DeSerialize(old));
    EXPECT_TRUE(assigned.IsAutomationEnabled() && !byInterface.IsAutomationEnabled());
    EXPECT_TRUE(std::isnan(assigned.GetMin()));
    assigned.SetMin(3.0);
    EXPECT_EQ(assigned.GetMin(), 3.0);
}

TEST(MIDICCSettings, AreStoredAndCopiedAsFarAsBothListsReach) {
    CInputMIDICCSettings saved(2), loaded(1);
    CMIDICCSettings copied(1);
    loaded.SetCount(3);
    for (int i = 0; i < 2; ++i)
        saved[i].SetNumber(i + 1);
    CMemDataObject stream;
    EXPECT_TRUE(TVectorSerializer(saved, "item").Serialize(stream));
    EXPECT_FALSE(TVectorDeSerializer(loaded, "item").DeSerialize(stream));
    CopyMIDICCSettings(saved, copied);
    CopyMIDICCSettings(copied, saved);
    EXPECT_EQ(Describe(loaded[1]) + Describe(copied[0]), "0 2 0 1 6 0 0 00 1 0 1 6 0 0 0");
    EXPECT_EQ(Describe(loaded[2]), "0 0 0 1 6 0 0 0"); // As it was built.
}

TEST(MIDICCSettings, StartOnControllersOfTheirOwn) {
    for (const int count : {1, 128, 129, 2100}) {
        DSP::CParamInfos infos(count);
        CInputMIDICCSettings inputs(count);
        CMIDICCSettings outputs(count + 1);
        int channel = 1, number = 0;
        for (int i = 0; i < count; ++i) {
            infos[i].SetMax(i);
            Fill(inputs[i]);
            Fill(outputs[i]);
        }
        FillInputMIDICCSettings(infos, inputs);
        FillOutputMIDICCSettings(infos, outputs);
        const auto at = [&] { return std::to_string(channel) + ' ' + std::to_string(number); };
        for (int i = 0; i < count; ++i) {
            const std::string rest = " 6 0 " + std::to_string(i) + " 0";
            const std::string input = count > 128 ? at() : "0 " + std::to_string(i);
            ASSERT_EQ(Describe(inputs[i]), input + " 0 1" + rest);
            number = (number + 1) % 128;
            if (number == 0)
                channel = channel % 16 + 1;
            ASSERT_EQ(Describe(outputs[i]), at() + " 0 0" + rest);
        }
        EXPECT_EQ(outputs[count].GetNumber(), 0);
    }
}

} // namespace Lathe::Audio::Plugin
