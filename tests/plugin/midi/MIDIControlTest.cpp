// Proves the way from a controller to a parameter and back: the bytes, the mapping, what an event
// sets and what an output sends, and that the audio thread allocates nothing on it.
#include "core/containers/Collection.h"
#include "datamodel/Journal.h"
#include "datamodel/objects/capture/CaptureParam.h"
#include "datamodel/objects/text/LogPositionMapper.h"
#include "dsp/FilterInfos.h"
#include "plugin/midi/MIDICCEvents.h"
#include "plugin/midi/MIDICCMapping.h"
#include "plugin/midi/MIDICCMessage.h"
#include "plugin/midi/MIDICCSettings.h"
#include "plugin/midi/MIDIEvent.h"
#include "serialization/MemDataObject.h"
#include "serialization/StreamValue.h"
#include "support/AllocationCounter.h"

#include <climits>
#include <cmath>
#include <thread>
#include <tuple>

namespace Lathe::Audio::Plugin {

namespace {

using namespace DataModel::Objects;
using DataModel::CJournal;
using Math::EParamValueCurve;
using MIDI::CMIDIEvent;
using Bytes = std::vector<unsigned char>;

CMIDIEvent MakeEvent(const Bytes& bytes) {
    return {bytes.data(), static_cast<int>(bytes.size())};
}

CParamInfo MakeInfo(double min, double max, IParamPositionMapper* mapper = nullptr) {
    return {EParamType::Float, min, max, min, "", "", "", nullptr, mapper};
}

const CParamInfo Linear = MakeInfo(-10.0, 10.0);
const CParamInfo Log =
    MakeInfo(20.0, 22000.0, new CLogPositionMapper(EParamType::Float, 20, 22000));

// As a stream has it, which can be anything.
CMIDICCSetting MakeSetting(double min, double max, int curve = 6) {
    Serialization::CMemDataObject stream;
    Serialization::WriteValue(stream, "number", 7);
    Serialization::WriteValue(stream, "enabled", true);
    Serialization::WriteValue(stream, "min", min);
    Serialization::WriteValue(stream, "max", max);
    CMIDICCSetting setting;
    setting.DeSerialize(stream);
    setting.SetCurve(EParamValueCurve(curve));
    return setting;
}

// Between two positions: every step of the controller comes back from its value.
void CheckMapping(const CParamInfo& info, double a, double b, int curve) {
    SCOPED_TRACE(curve);
    const IParamPositionMapper& mapper = info.GetPositionMapper();
    const CMIDICCSetting setting =
        MakeSetting(mapper.PositionToValue(a), mapper.PositionToValue(b), curve);
    for (int i = 0; i <= 127; ++i) {
        const double value = MapControllerToValue(i / 127.0, info, setting);
        const double position = mapper.ValueToPosition(value);
        // Roundings of two logarithms, which the steepest curve makes a thousandfold.
        const double back = a < b || a > b ? MapValueToController(value, info, setting) : i / 127.0;
        EXPECT_NEAR(back, i / 127.0, 1e-11);
        if (i % 127 == 0 || curve == static_cast<int>(EParamValueCurve::Square)) {
            EXPECT_NEAR(position, a + (b - a) * i * i / 127.0 / 127.0, 1e-13);
        }
    }
}

// Four parameters from 0 to 127, in which every setting hears the controller 7 of any channel.
struct CRig {
    CRig() {
        for (int i = 0; i < 4; ++i) {
            m_Infos[i] = m_Params[i].GetInfo() = MakeInfo(0.0, 127.0);
            m_Settings[i] = MakeSetting(0.0, 127.0);
        }
    }
    bool Apply(const Bytes& bytes, bool hasParams = true) {
        return ApplyMIDIEvent(MakeEvent(bytes), m_Settings, m_Infos,
                              hasParams ? &m_Params : nullptr, m_Message);
    }

    DSP::CParamInfos m_Infos{4};
    CoreUtilities::TCollection<CCaptureParam, ICaptureParam> m_Params{4};
    CMIDICCSettings m_Settings{4};
    CMIDICCMessage m_Message;
};

} // namespace

TEST(MIDIEvent, ReadsAndWritesItsBytes) {
    // The kind, the channel, the number and the value.
    const std::pair<Bytes, std::vector<int>> cases[] = {
        {{0x80, 1, 2}, {0, 0, 1, 2}},        {{0x9F, 0x81, 0xFF}, {1, 15, 1, 127}},
        {{0xB3, 127, 0, 9}, {2, 3, 127, 0}}, {{0xC0, 5}, {3, 0, 5, -1}},
        {{0xE1, 0, 0, 0, 9}, {4, 1, 0, 0}},  {{}, {4, -1, -1, -1}}};
    for (const auto& [bytes, expected] : cases) {
        const CMIDIEvent event = MakeEvent(bytes);
        EXPECT_EQ((std::vector<int>{static_cast<int>(event.GetKind()), event.GetChannel(),
                                    event.GetNumber(), event.GetValue()}),
                  expected);
    }
    CMIDIEvent event;
    event.SetChannel(31);
    event.SetKind(MIDI::EMIDIEventKind::ProgramChange);
    event.SetKind(MIDI::EMIDIEventKind::Other);
    event.SetNumber(200);
    event.SetValue(-1);
    EXPECT_EQ(Bytes(event.GetData(), event.GetData() + event.GetLength()), (Bytes{0xCF, 72, 127}));
}

TEST(MIDICCMapping, IsInverseAndRunsBetweenTheEndsOfTheSetting) {
    const double ranges[][2] = {{0.0, 1.0}, {1.0, 0.0}, {0.75, 0.25}, {0.5, 0.5}};
    for (const auto& [a, b] : ranges) {
        for (int curve = -1; curve <= 13; ++curve) {
            CheckMapping(Linear, a, b, curve);
            CheckMapping(Log, a, b, curve);
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
        {99, -5, 9, {0xB0, 7, 9}, 0.0}, {1, 7, 0, {0xB0, 7}, 127.0},
    };
    for (const auto& [channel, number, type, bytes, value] : cases) {
        SCOPED_TRACE(testing::Message() << channel << ' ' << number << ' ' << type);
        CRig rig;
        rig.m_Settings[2].SetChannel(channel);
        rig.m_Settings[2].SetNumber(number);
        rig.m_Settings[2].SetType(EMIDIControlType(type));
        const bool applies = bytes[0] / 16 == 0xB;
        EXPECT_EQ(rig.Apply(bytes), applies);
        EXPECT_NEAR(rig.m_Params[2].GetValue(), value, 1e-12);
        EXPECT_EQ(rig.m_Message.GetChannel(), applies ? bytes[0] % 16 + 1 : 1);
    }
}

TEST(MIDICCEvents, CaptureEachOfTheParametersThatAllListsHave) {
    CRig rig;
    rig.m_Settings[1] = MakeSetting(127.0, 0.0);
    rig.m_Params[2].Capture();
    rig.m_Infos.SetCount(3);
    CJournal journal(rig.m_Params[0]), held(rig.m_Params[2]), beyond(rig.m_Params[3]);
    EXPECT_TRUE(rig.Apply({0xB0, 7, 100}));
    EXPECT_EQ(journal.Take() + '.' + held.Take() + '.' + beyond.Take(), "bve.v.");
    EXPECT_TRUE(rig.m_Params[2].IsCaptured());
    EXPECT_NEAR(rig.m_Params[1].GetValue(), 27.0, 1e-12);
    rig.m_Settings[0].SetMIDIEnabled(false);
    EXPECT_TRUE(rig.Apply({0xB0, 7, 1}));
    EXPECT_FALSE(rig.Apply({0xB0, 7, 2}, false));
    EXPECT_EQ(journal.Take() + held.Take(), "v");
    EXPECT_EQ(rig.m_Message.GetValue(), 1);
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
        EXPECT_EQ(Bytes(event.GetData(), event.GetData() + event.GetLength()), sent);
    }
}

TEST(MIDICCEvents, AllocateNothingAndTakeChangesOfAnotherThread) {
    CRig rig;
    std::thread editor([&] {
        for (int i = 0; i < 500; ++i) {
            rig.m_Settings[1].SetMin(i % 100);
            rig.m_Settings[1].SetCurve(EParamValueCurve(i % 13));
        }
    });
    CMIDIEvent event = MakeEvent({0xB0, 7, 64});
    const CAllocationScope scope;
    for (int i = 0, last = -1; i < 500; ++i, last = -1) {
        ApplyMIDIEvent(event, rig.m_Settings, rig.m_Infos, &rig.m_Params, rig.m_Message);
        EXPECT_TRUE(MakeControllerEvent(rig.m_Settings[1], rig.m_Infos[1], i, last, event));
    }
    EXPECT_EQ(scope.GetCount(), 0);
    EXPECT_GT(rig.m_Params[1].GetValue(), 0.0);
    editor.join();
}

} // namespace Lathe::Audio::Plugin
