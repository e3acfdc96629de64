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

#include <cmath>
#include <limits>
#include <thread>

namespace Lathe::Audio::Plugin {

namespace {

using DataModel::CJournal;
using DataModel::Objects::CCaptureParam;
using DataModel::Objects::CLogPositionMapper;
using DataModel::Objects::EParamType;
using DSP::CParamInfo;
using Math::EParamValueCurve;
using MIDI::CMIDIEvent;
using MIDI::EMIDIEventKind;

using Bytes = std::vector<unsigned char>;

CMIDIEvent MakeEvent(const Bytes& bytes) {
    return {bytes.data(), static_cast<int>(bytes.size())};
}

CParamInfo MakeInfo(double min, double max, DataModel::Objects::IParamPositionMapper* mapper = {}) {
    return {EParamType::Float, min, max, min, "", "", "", nullptr, mapper};
}

CMIDICCSetting MakeSetting(double min, double max, int curve = 6) {
    CMIDICCSetting setting;
    setting.SetMIDIEnabled(true);
    setting.SetNumber(7);
    setting.SetMin(min);
    setting.SetMax(max);
    setting.SetCurve(EParamValueCurve(curve));
    return setting;
}

CParamInfo MakeLinear() {
    return MakeInfo(-10.0, 10.0);
}

CParamInfo MakeLog() {
    return MakeInfo(20.0, 22000.0, new CLogPositionMapper(EParamType::Float, 20.0, 22000.0));
}

// Between two positions: every step of the controller moves the value the same way and comes back.
void CheckMapping(const CParamInfo& info, double a, double b, int curve) {
    SCOPED_TRACE(curve);
    const auto& mapper = info.GetPositionMapper();
    const CMIDICCSetting setting =
        MakeSetting(mapper.PositionToValue(a), mapper.PositionToValue(b), curve);
    double last = a;
    for (int i = 0; i <= 127; ++i) {
        const double value = MapControllerToValue(i / 127.0, info, setting);
        const double position = mapper.ValueToPosition(value);
        // Roundings of two logarithms, which the steepest curve makes a thousandfold.
        const double back = a < b || a > b ? MapValueToController(value, info, setting) : i / 127.0;
        EXPECT_NEAR(back, i / 127.0, 1e-11);
        EXPECT_TRUE(i == 0 || (a < b ? position > last : a == b || position < last)) << i;
        last = position;
        const bool isSquare = curve == static_cast<int>(EParamValueCurve::Square);
        if (isSquare || i % 127 == 0) {
            EXPECT_NEAR(position, a + (b - a) * i * i / 127.0 / 127.0, 1e-13);
        }
    }
}

// Four parameters from 0 to 127, in which every setting hears the controller 7 of any channel.
struct CRig {
    CRig() {
        for (int i = 0; i < 4; ++i) {
            m_Infos[i] = MakeInfo(0.0, 127.0);
            m_Params[i].GetInfo() = m_Infos[i];
            m_Settings[i] = MakeSetting(0.0, 127.0);
        }
    }
    bool Apply(const Bytes& bytes) {
        return ApplyMIDIEvent(MakeEvent(bytes), m_Settings, m_Infos, &m_Params, m_Message);
    }

    DSP::CParamInfos m_Infos{4};
    CoreUtilities::TCollection<CCaptureParam, DataModel::Objects::ICaptureParam> m_Params{4};
    CMIDICCSettings m_Settings{4};
    CMIDICCMessage m_Message;
};

} // namespace

TEST(MIDIEvent, ReadsAndWritesItsBytes) {
    const struct {
        Bytes m_Bytes;
        int m_Kind, m_Channel, m_Number, m_Value;
    } cases[] = {
        {{0x80, 1, 2}, 0, 0, 1, 2},
        {{0x9F, 0x81, 0xFF}, 1, 15, 1, 127},
        {{0xB3, 127, 0, 9}, 2, 3, 127, 0},
        {{0xC0, 5}, 3, 0, 5, -1},
        {{0xE1, 0, 0, 0, 9}, 4, 1, 0, 0},
        {{0xB2}, 2, 2, -1, -1},
        {{}, 4, -1, -1, -1},
    };
    for (const auto& test : cases) {
        const CMIDIEvent event = MakeEvent(test.m_Bytes);
        EXPECT_EQ(static_cast<int>(event.GetKind()), test.m_Kind);
        EXPECT_EQ(event.GetChannel(), test.m_Channel);
        EXPECT_EQ(event.GetNumber(), test.m_Number);
        EXPECT_EQ(event.GetValue(), test.m_Value);
    }
    CMIDIEvent event;
    EXPECT_EQ(event.GetLength(), 3);
    event.SetChannel(31);
    for (int kind = 0; kind < 4; ++kind) {
        event.SetKind(EMIDIEventKind(kind));
        EXPECT_EQ(static_cast<int>(event.GetKind()), kind);
    }
    event.SetKind(EMIDIEventKind::Other);
    event.SetNumber(200);
    event.SetValue(-1);
    EXPECT_EQ(Bytes(event.GetData(), event.GetData() + 3), (Bytes{0xCF, 72, 127}));
    event.SetLength(9);
    EXPECT_EQ(event.GetLength(), MIDI::MaxEventLength);
}

TEST(MIDICCMapping, IsInverseAndRunsBetweenTheEndsOfTheSetting) {
    const double ranges[][2] = {{0.0, 1.0}, {1.0, 0.0}, {0.75, 0.25}, {0.5, 0.5}};
    for (const CParamInfo& info : {MakeLinear(), MakeLog()}) {
        for (const auto& [a, b] : ranges) {
            for (int curve = -1; curve <= 13; ++curve)
                CheckMapping(info, a, b, curve);
        }
    }
    // Beyond the range its ends; above an empty range, the distance.
    const CParamInfo info = MakeLinear();
    EXPECT_EQ(MapValueToController(9.0, info, MakeSetting(-5.0, 5.0)), 1.0);
    EXPECT_EQ(MapValueToController(9.0, info, MakeSetting(5.0, -5.0)), 0.0);
    EXPECT_DOUBLE_EQ(MapValueToController(5.0, info, MakeSetting(0.0, 0.0)), 0.25);
    EXPECT_EQ(MapValueToController(-5.0, info, MakeSetting(0.0, 0.0)), 0.0);
}

TEST(MIDICCMapping, StaysWithinBoundsWhateverTheSettingHolds) {
    const std::vector<double> hostile = {NAN, INFINITY, -INFINITY, -1e308, 1e308, -5.0, 0.0};
    for (const CParamInfo& info : {MakeLinear(), MakeLog()}) {
        for (std::size_t i = 0; i < hostile.size() * hostile.size(); ++i) {
            Serialization::CMemDataObject stream;
            Serialization::WriteValue(stream, "min", hostile[i % hostile.size()]);
            Serialization::WriteValue(stream, "max", hostile[i / hostile.size()]);
            CMIDICCSetting setting;
            setting.DeSerialize(stream);
            for (const double x : hostile) {
                const double value = MapControllerToValue(x, info, setting);
                EXPECT_TRUE(value >= info.GetMin() && value <= info.GetMax()) << i;
                const double controller = MapValueToController(x, info, setting);
                EXPECT_TRUE(controller >= 0.0 && controller <= 1.0) << i;
            }
        }
    }
}

TEST(ApplyMIDIEvent, SetsWhatMatches) {
    // A setting's channel, number, type and switch; the event; what the parameter then is.
    const struct {
        int m_Channel, m_Number, m_Type;
        bool m_Enabled;
        Bytes m_Event;
        bool m_Applies;
        double m_Value;
    } cases[] = {
        {0, 7, 0, true, {0xB0, 7, 64}, true, 64.0}, {0, 7, 0, true, {0xBF, 7, 127}, true, 127.0},
        {16, 7, 0, true, {0xBF, 7, 9}, true, 9.0},  {16, 7, 0, true, {0xB0, 7, 9}, true, 0.0},
        {1, 7, 0, true, {0xB0, 7, 9}, true, 9.0},   {1, 8, 0, true, {0xB0, 7, 9}, true, 0.0},
        {0, 7, 0, false, {0xB0, 7, 9}, true, 0.0},  {0, 7, 1, true, {0xB0, 7, 9}, true, 0.0},
        {0, 7, 1, true, {0x90, 7, 9}, false, 0.0},  {0, 7, 0, true, {0xC0, 7, 9}, false, 0.0},
        {99, -5, 9, true, {0xB0, 7, 9}, true, 0.0}, {0, 7, 0, true, {0xB0, 7}, true, 127.0},
        {0, 127, 0, true, {0xB0}, true, 127.0},     {0, 7, 0, true, {}, false, 0.0},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(&test - cases);
        CRig rig;
        rig.m_Settings[2].SetChannel(test.m_Channel);
        rig.m_Settings[2].SetNumber(test.m_Number);
        rig.m_Settings[2].SetType(EMIDIControlType(test.m_Type));
        rig.m_Settings[2].SetMIDIEnabled(test.m_Enabled);
        EXPECT_EQ(rig.Apply(test.m_Event), test.m_Applies);
        EXPECT_NEAR(rig.m_Params[2].GetValue(), test.m_Value, 1e-12);
        if (test.m_Applies) {
            EXPECT_EQ(rig.m_Message.GetChannel(), test.m_Event[0] - 0xB0 + 1);
            EXPECT_EQ(rig.m_Message.GetNumber(), test.m_Event.size() > 1 ? 7 : 127);
        }
    }
}

TEST(ApplyMIDIEvent, CapturesEachOfTheParametersThatAllListsHave) {
    CRig rig;
    rig.m_Settings[1].SetMin(127.0);
    rig.m_Settings[1].SetMax(0.0);
    rig.m_Params[2].Capture();
    rig.m_Infos.SetCount(3);
    CJournal journal(rig.m_Params[0]), held(rig.m_Params[2]), beyond(rig.m_Params[3]);
    journal.Listen(rig.m_Message.GetReceivedEvent(), 'r');
    EXPECT_TRUE(rig.Apply({0xB0, 7, 100}));
    EXPECT_EQ(journal.Take(), "bve");
    EXPECT_EQ(held.Take(), "v");
    EXPECT_TRUE(rig.m_Params[2].IsCaptured());
    EXPECT_EQ(beyond.Take(), "");
    EXPECT_NEAR(rig.m_Params[1].GetValue(), 27.0, 1e-12);
    EXPECT_FALSE(ApplyMIDIEvent(MakeEvent({0xB1, 7, 1}), rig.m_Settings, rig.m_Infos, nullptr,
                                rig.m_Message));
    EXPECT_EQ(rig.m_Message.GetChannel(), 1);
}

TEST(MakeControllerEvent, SendsOnlyNewSevenBits) {
    const CParamInfo info = MakeInfo(0.0, 127.0);
    CMIDICCSetting setting = MakeSetting(0.0, 127.0);
    int last = -1;
    const auto send = [&](double value) {
        CMIDIEvent event = MakeEvent({0x95});
        event.SetTimeStamp(5.0);
        if (!MakeControllerEvent(setting, info, value, last, event))
            return Bytes();
        EXPECT_EQ(event.GetTimeStamp(), 0.0);
        return Bytes(event.GetData(), event.GetData() + event.GetLength());
    };
    setting.SetChannel(16);
    EXPECT_EQ(send(0.0), (Bytes{0xBF, 7, 0}));
    EXPECT_EQ(send(0.4), Bytes());
    EXPECT_EQ(send(0.6), (Bytes{0xBF, 7, 1}));
    EXPECT_EQ(send(1e300), (Bytes{0xBF, 7, 127}));
    setting.SetMIDIEnabled(false);
    EXPECT_EQ(send(3.0), Bytes());
    EXPECT_EQ(last, 127);
    setting.SetMIDIEnabled(true);
    setting.SetChannel(std::numeric_limits<int>::min());
    setting.SetNumber(-5);
    EXPECT_EQ(send(NAN), (Bytes{0xBF, 123, 0}));
}

TEST(MIDIControl, AllocatesNothingAndTakesChangesOfAnotherThread) {
    CRig rig;
    std::thread editor([&] {
        for (int i = 0; i < 500; ++i) {
            rig.m_Settings[1].SetMin(i % 100);
            rig.m_Settings[1].SetCurve(EParamValueCurve(i % 13));
            rig.m_Settings[1].SetNumber(7 + i % 2);
        }
    });
    CMIDIEvent event = MakeEvent({0xB0, 7, 0});
    const CAllocationScope scope;
    for (int i = 0; i < 500; ++i) {
        int last = -1;
        event.SetNumber(7);
        event.SetValue(i);
        ApplyMIDIEvent(event, rig.m_Settings, rig.m_Infos, &rig.m_Params, rig.m_Message);
        MakeControllerEvent(rig.m_Settings[1], rig.m_Infos[1], i, last, event);
    }
    EXPECT_EQ(scope.GetCount(), 0);
    editor.join();
}

} // namespace Lathe::Audio::Plugin
