// The way from a controller to a parameter and back: the bytes, the settings and their documents,
// the mapping, what an event sets and what an output sends, and who hears of a message.
#include "core/threads/ManualTime.h"
#include "datamodel/Journal.h"
#include "datamodel/objects/text/LogPositionMapper.h"
#include "plugin/TestHost.h"
#include "plugin/midi/MIDICCEvents.h"
#include "plugin/midi/MIDICCMapping.h"
#include "plugin/midi/MIDICCMessageTimerProxy.h"
#include "plugin/midi/MIDICCSettings.h"
#include "plugin/midi/MIDILearner.h"

#include <climits>
#include <thread>
#include <tuple>

namespace Lathe::Audio::Plugin {
namespace {

using namespace DataModel::Objects;
using namespace Serialization::Tests;
using DataModel::CJournal;
using Math::EParamValueCurve;
using MIDI::CMIDIEvent;
using Serialization::CMemDataObject;
using Serialization::CXmlDataObject;
using Serialization::WriteValue;
using Bytes = std::vector<unsigned char>;

CMIDIEvent MakeEvent(const Bytes& bytes) {
    return {bytes.data(), static_cast<int>(bytes.size())};
}
Bytes GetBytes(const CMIDIEvent& event) {
    return {event.GetData(), event.GetData() + event.GetLength()};
}

CParamInfo MakeInfo(double min, double max, IParamPositionMapper* mapper = nullptr) {
    return {EParamType::Float, min, max, min, "", "", "", nullptr, mapper};
}

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
    TDocument document("s");
    EXPECT_TRUE(Parse(document, "<s " + attributes + "/>"));
    CMIDICCSetting setting(true);
    Fill(setting);
    const std::string before = Describe(setting);
    CJournal journal(setting.GetChangedEvent());
    const std::string result = setting.DeSerialize(document) ? "reads " : "fails ";
    EXPECT_EQ(journal.Take(), Describe(setting) == before ? "" : "c");
    return result + Describe(setting);
}

// Of the controller 7, with bounds as a stream has them, which can be anything.
CMIDICCSetting MakeSetting(double min, double max, int curve = 6) {
    CMemDataObject stream;
    EXPECT_TRUE(WriteValue(stream, "min", min) && WriteValue(stream, "max", max));
    CMIDICCSetting setting;
    setting.DeSerialize(stream);
    setting.SetNumber(7);
    setting.SetMIDIEnabled(true);
    setting.SetCurve(EParamValueCurve(curve));
    return setting;
}

TEST(MIDIEvent, ReadsAndWritesItsBytes) {
    // The kind, the channel, the number and the value.
    const std::pair<Bytes, std::vector<int>> cases[] = {
        {{0x80, 1, 2}, {0, 0, 1, 2}},        {{0x9F, 0x81, 0xFF}, {1, 15, 1, 127}},
        {{0xB3, 127, 0, 9}, {2, 3, 127, 0}}, {{0xC0, 5}, {3, 0, 5, -1}},
        {{0xE1, 0, 0, 0, 9}, {4, 1, 0, 0}},  {{}, {4, -1, -1, -1}}};
    for (const auto& [bytes, expected] : cases) {
        const CMIDIEvent event = MakeEvent(bytes);
        EXPECT_EQ((std::vector{static_cast<int>(event.GetKind()), event.GetChannel(),
                               event.GetNumber(), event.GetValue()}),
                  expected);
    }
    CMIDIEvent event;
    event.SetChannel(31);
    event.SetKind(MIDI::EMIDIEventKind::ProgramChange);
    event.SetKind(MIDI::EMIDIEventKind::Other);
    event.SetNumber(200);
    event.SetValue(-1);
    EXPECT_EQ(GetBytes(event), (Bytes{0xCF, 72, 127}));
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

TEST(MIDICCSetting, RaisesOneEventForEachChangeAndForEachCopy) {
    CMIDIController controller(2, 1);
    IMIDICCSetting& source = controller.GetInputSettings()[1];
    CMIDICCSetting assigned, copied;
    CJournal journal(controller.GetSettingsChangedEvent());
    journal.Listen(assigned.GetChangedEvent(), 'a');
    journal.Listen(copied.GetChangedEvent(), 'i');
    controller.GetOutputSettings()[0].SetNumber(9);
    for (const char* events : {"cccccccccia", ""}) {
        Fill(source);
        source.SetMin(NAN);
        copied.Copy(source);
        assigned = copied;
        EXPECT_EQ(journal.Take(), events);
        EXPECT_EQ(Describe(assigned), "5 6 1 0 12 1.5 -2.5 2");
    }
    // A NaN that was read gives way to a number.
    CMIDICCSetting read = MakeSetting(NAN, 0.0);
    read.SetMin(3.0);
    EXPECT_EQ(read.GetMin(), 3.0);
}

TEST(MIDICCSettings, StartOnControllersOfTheirOwn) {
    for (const int count : {1, 128, 129, 2100}) {
        DSP::CParamInfos infos(count);
        CInputMIDICCSettings inputs(count);
        CMIDICCSettings outputs(count + 1);
        for (int i = 0; i < count; ++i)
            infos[i].SetMax(i);
        Fill(inputs[0]);
        Fill(outputs[0]);
        FillInputMIDICCSettings(infos, inputs);
        FillOutputMIDICCSettings(infos, outputs);
        int channel = 1, number = 0;
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

const CParamInfo Linear = MakeInfo(-10.0, 10.0);
const CParamInfo Log =
    MakeInfo(20.0, 22000.0, new CLogPositionMapper(EParamType::Float, 20, 22000));

// Every step of the controller comes back from its value.
TEST(MIDICCMapping, IsInverseAndRunsBetweenTheEndsOfTheSetting) {
    const double ranges[][2] = {{0.0, 1.0}, {1.0, 0.0}, {0.75, 0.25}, {0.5, 0.5}};
    for (int i = 0; i < 2 * 4 * 15; ++i) {
        const CParamInfo& info = i % 2 ? Linear : Log;
        const auto& [a, b] = ranges[i / 2 % 4];
        const int curve = i / 8 - 1;
        const IParamPositionMapper& mapper = info.GetPositionMapper();
        const CMIDICCSetting setting =
            MakeSetting(mapper.PositionToValue(a), mapper.PositionToValue(b), curve);
        for (int step = 0; step <= 127; ++step) {
            const double controller = step / 127.0;
            const double value = MapControllerToValue(controller, info, setting);
            // Roundings of two logarithms, which the steepest curve makes a thousandfold.
            const double back = MapValueToController(value, info, setting);
            EXPECT_NEAR(a < b || a > b ? back : controller, controller, 1e-11) << curve;
            if (step % 127 == 0 || curve == static_cast<int>(EParamValueCurve::Square)) {
                const double expected = a + (b - a) * controller * controller;
                EXPECT_NEAR(mapper.ValueToPosition(value), expected, 1e-13);
            }
        }
    }
    // Beyond the range its ends; above an empty range, the distance.
    EXPECT_EQ(MapValueToController(9.0, Linear, MakeSetting(-5.0, 5.0)), 1.0);
    EXPECT_EQ(MapValueToController(9.0, Linear, MakeSetting(5.0, -5.0)), 0.0);
    EXPECT_DOUBLE_EQ(MapValueToController(5.0, Linear, MakeSetting(0.0, 0.0)), 0.25);
}

TEST(MIDICCMapping, StaysWithinBoundsWhateverTheSettingHolds) {
    const double hostile[] = {NAN, INFINITY, -INFINITY, -1e308, 1e308, -5.0, 0.0};
    for (int i = 0; i < 2 * 7 * 7 * 7; ++i) {
        const CParamInfo& info = i % 2 ? Linear : Log;
        const CMIDICCSetting setting = MakeSetting(hostile[i / 2 % 7], hostile[i / 14 % 7], 12);
        const double value = MapControllerToValue(hostile[i / 98], info, setting);
        EXPECT_TRUE(value >= info.GetMin() && value <= info.GetMax()) << i;
        const double controller = MapValueToController(hostile[i / 98], info, setting);
        EXPECT_TRUE(controller >= 0.0 && controller <= 1.0) << i;
    }
}

TEST(MIDICCEvents, SetWhatMatches) {
    // The setting's channel, number and type; the event; what the parameter then is.
    const std::tuple<int, int, int, Bytes, double> cases[] = {
        {0, 7, 0, {0xB0, 7, 64}, 64.0}, {0, 7, 0, {0xBF, 7, 127}, 127.0},
        {16, 7, 0, {0xBF, 7, 9}, 9.0},  {16, 7, 0, {0xB0, 7, 9}, 0.0},
        {1, 8, 0, {0xB0, 7, 9}, 0.0},   {0, 7, 1, {0xB0, 7, 9}, 0.0},
        {0, 7, 1, {0x90, 7, 9}, 0.0},   {0, 7, 0, {0xC0, 7, 9}, 0.0},
        {99, -5, 9, {0xB0, 7, 9}, 0.0}, {1, 7, 0, {0xB0, 7}, 127.0}};
    for (const auto& [channel, number, type, bytes, value] : cases) {
        SCOPED_TRACE(testing::Message() << channel << ' ' << number << ' ' << type);
        DSP::CParamInfos infos(4);
        CMIDICCSettings settings(4);
        for (int i = 0; i < 4; ++i) {
            settings[i] = MakeSetting(0.0, 127.0);
            infos[i] = MakeInfo(0.0, 127.0);
        }
        THostParams<ICaptureParam> params(infos);
        infos.SetCount(3);
        settings[1].SetMIDIEnabled(false);
        settings[2].SetChannel(channel);
        settings[2].SetNumber(number);
        settings[2].SetType(EMIDIControlType(type));
        params[2].Capture();
        CJournal journal(params[0]), off(params[1]), held(params[2]), beyond(params[3]);
        CMIDICCMessage message;
        const bool applies = bytes[0] / 16 == 0xB;
        EXPECT_EQ(ApplyMIDIEvent(MakeEvent(bytes), settings, infos, &params, message), applies);
        EXPECT_NEAR(params[2].GetValue(), value, 1e-12);
        EXPECT_EQ(journal.Take() + off.Take() + beyond.Take() + '.' + held.Take(),
                  std::string(applies ? "bve." : ".") + (value > 0.0 ? "v" : ""));
        EXPECT_EQ(message.GetChannel(), applies ? bytes[0] % 16 + 1 : 1);
        EXPECT_FALSE(ApplyMIDIEvent(MakeEvent(bytes), settings, infos, nullptr, message));
    }
}

TEST(MIDICCEvents, AreSentForNewSevenBitsAlone) {
    // The setting's channel and switch; the value; what is sent.
    const std::tuple<int, bool, double, Bytes> steps[] = {
        {16, true, 0.0, {0xBF, 7, 0}},      {16, true, 0.4, {}}, {16, true, 0.6, {0xBF, 7, 1}},
        {1, true, 1e300, {0xB0, 7, 127}},   {1, false, 3.0, {}}, {1, true, 127.0, {}},
        {INT_MIN, true, NAN, {0xBF, 7, 0}},
    };
    CMIDICCSetting setting = MakeSetting(0.0, 127.0);
    int last = -1;
    for (const auto& [channel, enabled, value, sent] : steps) {
        setting.SetChannel(channel);
        setting.SetMIDIEnabled(enabled);
        CMIDIEvent event = MakeEvent({});
        EXPECT_NE(MakeControllerEvent(setting, MakeInfo(0.0, 127.0), value, last, event),
                  sent.empty());
        EXPECT_EQ(GetBytes(event), sent);
    }
}

void Send(CMIDICCMessage& message, int channel, int number, int value, bool force) {
    CMIDICCMessage sent;
    sent.Store(channel, number, value);
    message.Set(sent, force);
}

TEST(MIDICCMessageTimerProxy, TellsOncePerTickWhateverTheAudioThreadSends) {
    CMIDICCMessage message;
    CManualTimerProvider timers;
    CConstMIDICCMessageTimerProxy proxy(message, timers);
    proxy.SetRefreshTime(20);
    CJournal direct(message.GetContentsChangedEvent()), journal(proxy.GetContentsChangedEvent());
    direct.Listen(message.GetReceivedEvent(), 'r');
    journal.Listen(proxy.GetReceivedEvent(), 'r');
    for (const bool force : {false, false, true})
        Send(message, 2, 3, 4, force);
    EXPECT_EQ(direct.Take(), "crrcr");
    for (const char* events : {"cr", "r"}) {
        timers.Advance(19);
        EXPECT_EQ(journal.Take(), "");
        timers.Advance(21);
        EXPECT_EQ(journal.Take(), events);
        Send(message, 2, 3, 4, false);
    }
    std::thread audio([&] {
        for (int i = 0; i <= 2000; ++i)
            Send(message, 16, i / 128, i % 128, true);
    });
    for (int i = 0; i < 200; ++i)
        timers.Advance(20);
    audio.join();
    EXPECT_EQ(proxy.GetNumber() * 128 + proxy.GetValue(), 2000);
}

TEST(MIDILearner, FollowsEveryMessageWhileItIsEnabled) {
    CMIDICCMessage message;
    CMIDICCSetting setting;
    {
        CMIDILearner learner(message, setting, false);
        CJournal enabled(learner.GetEnabledChangedEvent());
        Send(message, 2, 3, 0, true);
        EXPECT_EQ(setting.GetNumber(), 0);
        for (int i = 0; i < 2; ++i)
            learner.SetEnabled(true);
        EXPECT_EQ(enabled.Take(), "c");
        Send(message, 4, 5, 0, true);
        Send(message, 6, 7, 0, true);
    }
    Send(message, 8, 9, 0, true);
    EXPECT_EQ(setting.GetChannel() * 10 + setting.GetNumber(), 67);
}

} // namespace
} // namespace Lathe::Audio::Plugin
