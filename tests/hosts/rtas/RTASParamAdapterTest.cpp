// Proves that values reach the host and come back as they were, that each change is told once and
// to whom it concerns, and that names and texts fit the host's room.
#include "hosts/rtas/RTASParamAdapter.h"
#include "datamodel/objects/text/ParamValueToText.h"
#include "hosts/rtas/HostInteger.h"
#include "hosts/rtas/HostLog.h"
#include "hosts/rtas/RTASPluginControl.h"
#include "platform/rtas/Process.h"
#include "plugin/TestHost.h"
#include "plugin/midi/MIDICCSetting.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace LatheExt::RTASPlugin {
namespace {

using namespace Lathe::Audio::Plugin;
using Lathe::DataModel::Objects::CParamValueToText;
using Lathe::DataModel::Objects::EParamType;

constexpr long s_Bottom = std::numeric_limits<std::int32_t>::min();
constexpr long s_Top = std::numeric_limits<std::int32_t>::max();

TEST(HostIntegerTest, EveryIntegerComesBack) {
    for (long edge : {s_Bottom, s_Bottom / 2, 0L, s_Top / 2, s_Top}) {
        for (long value = std::max(edge - 1000, s_Bottom); value <= std::min(edge + 1000, s_Top);
             ++value)
            ASSERT_EQ(PositionToHostInteger(HostIntegerToPosition(value)), value);
    }
    EXPECT_EQ(HostIntegerToPosition(s_Bottom), 0.0);
    EXPECT_EQ(HostIntegerToPosition(s_Top), 1.0);
    for (const double below : {-1.0, -HUGE_VAL, std::nan("")})
        EXPECT_EQ(PositionToHostInteger(below), s_Bottom);
    for (const double above : {1.5, HUGE_VAL})
        EXPECT_EQ(PositionToHostInteger(above), s_Top);
}

// A library that answers as the host does.
class CAnsweringProcess : public CProcess {
public:
    void OnControlValueChanged(long control, long value) LATHE_REALTIME override {
        m_Adapter.SetFromHost(value);
        CProcess::OnControlValueChanged(control, value);
    }

    CRTASParamAdapter m_Adapter;
};

class RTASParamAdapterTest : public testing::Test {
protected:
    // As the only control of its process.
    void SetUpWith(const CParamInfo& info, bool isOutput = false) {
        m_Setting.SetMin(info.GetMin());
        m_Setting.SetMax(info.GetMax());
        m_Adapter.Setup(&m_Process, info, m_Setting, 1);
        m_Process.SetUp(m_Log.MakeSetup());
        auto control = std::make_unique<CRTASPluginControl>(&m_Adapter, isOutput);
        m_Control = control.get();
        m_Process.AddControl(std::move(control));
        m_Adapter.GetValueChangedEvent().AddCommand(m_Changes);
    }
    void SetUp() override {
        SetUpWith(CParamInfo(EParamType::Float, -40.0, 40.0, 10.0, "Gain", "dB", ""));
    }
    // So often the value-changed event ran since the last call, and this the host heard.
    void CheckTold(int changes, const std::string& calls) {
        EXPECT_EQ(m_Changes.m_Count.exchange(0), changes);
        EXPECT_EQ(m_Log.Take(), calls);
    }

    CHostLog m_Log;
    CMIDICCSetting m_Setting;
    CAnsweringProcess m_Process;
    CRTASParamAdapter& m_Adapter = m_Process.m_Adapter;
    CRTASPluginControl* m_Control = nullptr;
    CCountCommand m_Changes;
};

TEST_F(RTASParamAdapterTest, EachChangeIsToldOnce) {
    m_Adapter.SetValue(40.0);
    CheckTold(1, "1=2147483647 ");
    EXPECT_EQ(m_Control->GetValue(), s_Top);
    for (const double same : {40.0, std::nan("")})
        m_Adapter.SetValue(same);
    CheckTold(0, "");
    // The host's answer must not round what was set.
    m_Adapter.SetValue(1.0 / 3.0);
    EXPECT_EQ(m_Adapter.GetValue(), 1.0 / 3.0);
    m_Adapter.SetFromHost(m_Adapter.ToHost(1.0 / 3.0));
    EXPECT_EQ(m_Adapter.GetValue(), 1.0 / 3.0);
    CheckTold(1, "1=" + std::to_string(m_Adapter.ToHost(1.0 / 3.0)) + " ");
    m_Adapter.SetFromHost(s_Bottom);
    EXPECT_EQ(m_Adapter.GetValue(), -40.0);
    CheckTold(1, "");
    // Quietly, but the host's control follows.
    m_Adapter.SetValueQuietly(40.0);
    EXPECT_EQ(m_Control->GetValue(), s_Top);
    CheckTold(1, "");
}

TEST_F(RTASParamAdapterTest, GesturesDontCount) {
    m_Adapter.Release();
    m_Adapter.Capture();
    m_Adapter.Capture();
    EXPECT_TRUE(m_Adapter.IsCaptured());
    m_Adapter.Release();
    m_Adapter.Release();
    CheckTold(0, "touch1 release1 ");
}

TEST_F(RTASParamAdapterTest, TheSettingBoundsTheHostsRange) {
    const auto check = [this](double min, double max, double bottom, double top) {
        m_Setting.SetMin(min);
        m_Setting.SetMax(max);
        EXPECT_EQ(m_Adapter.FromHost(s_Bottom), bottom);
        EXPECT_EQ(m_Adapter.FromHost(s_Top), top);
    };
    check(-10.0, 30.0, -10.0, 30.0);
    EXPECT_EQ(m_Adapter.ToHost(-40.0), s_Bottom);
    EXPECT_EQ(m_Adapter.ToHost(40.0), s_Top);
    check(40.0, -40.0, 40.0, -40.0);
    EXPECT_EQ(m_Adapter.ToHost(40.0), s_Bottom);
    // An empty range: how far a value lies above it, of the whole range.
    check(0.0, 0.0, 0.0, 0.0);
    EXPECT_EQ(m_Adapter.ToHost(40.0), PositionToHostInteger(0.5));
    EXPECT_EQ(m_Adapter.ToHost(-40.0), s_Bottom);
    check(-40.0, 40.0, -40.0, 40.0);
    for (double value = -40.0; value <= 40.0; value += 0.37) // Half a step of the integers.
        EXPECT_NEAR(m_Adapter.FromHost(m_Adapter.ToHost(value)), value, 80.0 / 4294967295.0);
}

TEST(RTASPluginControlTest, StepsFollowTheType) {
    struct SKind {
        EParamType m_Type;
        double m_Min, m_Max;
        long m_Steps;
        bool m_IsContinuous;
    };
    for (const SKind& kind : {SKind{EParamType::Boolean, 0.0, 1.0, 2, false},
                              SKind{EParamType::Reserved, 0.0, 5.0, 2, false},
                              SKind{EParamType::Integer, 0.0, 7.0, 8, false},
                              SKind{EParamType::Float, 0.0, 7.0, 1024, true},
                              SKind{static_cast<EParamType>(9), 0.0, 7.0, 1024, true}}) {
        CRTASParamAdapter adapter;
        CMIDICCSetting setting;
        setting.SetMax(kind.m_Max);
        adapter.Setup(nullptr,
                      CParamInfo(kind.m_Type, kind.m_Min, kind.m_Max, kind.m_Max, "", "", ""),
                      setting, 7);
        const CRTASPluginControl control(&adapter, false);
        EXPECT_EQ(control.GetNumberOfSteps(), kind.m_Steps);
        EXPECT_EQ(control.IsContinuous(), kind.m_IsContinuous);
        EXPECT_EQ(control.GetControlNumber(), 7);
        EXPECT_EQ(control.GetDefaultValue(), s_Top);
    }
}

class RTASPluginControlTexts : public RTASParamAdapterTest {
protected:
    // The room has one character more than the length; what lies behind stays.
    template <class TWrite>
    std::string Read(long length, TWrite write) {
        std::string text(64, '#');
        write(text.data(), length);
        EXPECT_EQ(text.substr(static_cast<std::size_t>(length) + 1).find_first_not_of('#'),
                  std::string::npos);
        return text.c_str();
    }
};

TEST_F(RTASPluginControlTexts, NamesFitEveryLength) {
    const CParamInfo info(EParamType::Float, 0.0, 1.0, 0.0, "Input Level", "", "");
    constexpr const char* s_Names[] = {
        "",        "I",        "It",        "ItL",        "ItLl",        "ItLvl",      "IntLvl",
        "InptLvl", "InptLevl", "InptLevel", "InputLevel", "Input Level", "Input Level"};
    for (const bool isOutput : {false, true}) {
        SetUpWith(info, isOutput);
        for (long length = 1; length <= 12; ++length)
            EXPECT_EQ(Read(length, [this](char* text,
                                          long room) { m_Control->GetNameOfLength(text, room); }),
                      s_Names[length]);
        EXPECT_EQ(
            Read(15, [this](char* text, long room) { m_Control->GetNameOfLength(text, room); }),
            isOutput ? "OUT:Input Level" : "Input Level");
    }
    EXPECT_EQ(Read(13, [this](char* text, long room) { m_Control->GetNameOfLength(text, room); }),
              "OUT:InptLevel");
    char untouched = '#';
    m_Control->GetNameOfLength(&untouched, 0);
    m_Control->GetValueString(nullptr, 8, 0);
    EXPECT_EQ(untouched, '#');
}

TEST_F(RTASPluginControlTexts, ValuesAreReadAsTheyAreWritten) {
    SetUpWith(CParamInfo(EParamType::Float, -40.0, 40.0, 10.0, "Gain", "dB", "",
                         new CParamValueToText("%+.1f", false, "{value}")));
    const auto read = [this](long length, double value) {
        return Read(length, [&](char* text, long room) {
            m_Control->GetValueString(text, room, m_Adapter.ToHost(value));
        });
    };
    EXPECT_EQ(read(16, -12.5), "-12.5 dB");
    EXPECT_EQ(read(7, -12.5), "-12.5dB");
    EXPECT_EQ(read(5, -12.5), "-12.5");
    EXPECT_EQ(m_Control->ConvertStringToValue("-12.5"), m_Adapter.ToHost(-12.5));
    m_Control->SetValue(s_Top);
    for (const char* unreadable : {"loud", "", static_cast<const char*>(nullptr)})
        EXPECT_EQ(m_Control->ConvertStringToValue(unreadable), s_Top);
}

} // namespace
} // namespace LatheExt::RTASPlugin
