// Proves that values reach the host and come back as they were, that each change is told once and
// to whom it concerns, and that names and texts fit the host's room.
#include "hosts/rtas/RTASParamAdapter.h"
#include "datamodel/objects/text/ParamValueToText.h"
#include "hosts/rtas/HostInteger.h"
#include "hosts/rtas/RTASPluginControl.h"
#include "hosts/rtas/TestProcess.h"

#include <gtest/gtest.h>

#include <cmath>

namespace LatheExt::RTASPlugin {
namespace {

using Lathe::DataModel::Objects::CParamValueToText;
using Lathe::DataModel::Objects::EParamType;

TEST(HostIntegerTest, EveryIntegerComesBack) {
    for (long edge : {s_Bottom, s_Bottom / 2, 0L, s_Top / 2, s_Top}) {
        for (long i = std::max(edge - 1000, s_Bottom); i <= std::min(edge + 1000, s_Top); ++i)
            ASSERT_EQ(PositionToHostInteger(HostIntegerToPosition(i)), i);
    }
    for (const double below : {-1.0, 0.0, std::nan("")})
        EXPECT_EQ(PositionToHostInteger(below), s_Bottom);
    for (const double above : {1.0, HUGE_VAL})
        EXPECT_EQ(PositionToHostInteger(above), s_Top);
}

// A library whose host answers at once.
class CAnsweringProcess : public CProcess {
public:
    void OnControlValueChanged(long control, long value) LATHE_REALTIME override {
        m_Adapter.SetFromHost(value);
        CProcess::OnControlValueChanged(control, value);
    }

    CRTASParamAdapter m_Adapter;
};

// An output, the only control of its process.
class RTASParamAdapterTest : public testing::Test {
protected:
    void SetUp() override {
        m_Setting.SetMin(-40.0);
        m_Setting.SetMax(40.0);
        m_Adapter.Setup(&m_Process,
                        CParamInfo(EParamType::Float, -40.0, 40.0, 10.0, "Input Level", "dB", "",
                                   new CParamValueToText("%+.1f", false, "{value}")),
                        m_Setting, 1);
        m_Process.SetUp({.m_Calls = m_Log.MakeCalls()});
        m_Process.AddControl(std::make_unique<CRTASPluginControl>(&m_Adapter, true));
        m_Adapter.GetValueChangedEvent().AddCommand(m_Changes);
    }
    // So often the value-changed event ran since the last call, and this the host heard.
    void CheckTold(int changes, const std::string& calls) {
        EXPECT_EQ(m_Changes.m_Count.exchange(0), changes);
        EXPECT_EQ(m_Log.Take(), calls);
    }
    CPluginControl& GetControl() { return *m_Process.GetControl(1); }
    // The room has one character more than the length.
    std::string ReadName(long length) {
        std::string text(64, '#');
        GetControl().GetNameOfLength(text.data(), length);
        EXPECT_EQ(text[static_cast<std::size_t>(length) + 1], '#');
        return text.c_str();
    }
    std::string ReadText(long length, double value) {
        char text[64];
        GetControl().GetValueString(text, length, m_Adapter.ToHost(value));
        return text;
    }

    SHostLog m_Log;
    Plugin::CMIDICCSetting m_Setting;
    CAnsweringProcess m_Process;
    CRTASParamAdapter& m_Adapter = m_Process.m_Adapter;
    Plugin::CCountCommand m_Changes;
};

TEST_F(RTASParamAdapterTest, EachChangeIsToldOnce) {
    for (const double value : {40.0, 40.0, std::nan("")})
        m_Adapter.SetValue(value);
    CheckTold(1, "1=2147483647 ");
    m_Adapter.SetValueQuietly(1.0 / 3.0);
    // What comes back doesn't round what was set.
    m_Adapter.SetFromHost(GetControl().GetValue());
    EXPECT_EQ(m_Adapter.GetValue(), 1.0 / 3.0);
    CheckTold(1, "");
    m_Adapter.SetFromHost(s_Bottom);
    EXPECT_EQ(m_Adapter.GetValue(), -40.0);
    CheckTold(1, "");
    m_Adapter.Release();
    m_Adapter.Capture();
    m_Adapter.Capture();
    m_Adapter.Release();
    CheckTold(0, "touch1 release1 ");
}

TEST_F(RTASParamAdapterTest, TheSettingBoundsTheHostsRange) {
    for (const auto& [min, max] : {std::pair{-10.0, 30.0}, {40.0, -40.0}, {0.0, 0.0}}) {
        m_Setting.SetMin(min);
        m_Setting.SetMax(max);
        EXPECT_EQ(m_Adapter.FromHost(s_Bottom), min);
        EXPECT_EQ(m_Adapter.FromHost(s_Top), max);
        EXPECT_EQ(m_Adapter.ToHost(-40.0), min > max ? s_Top : s_Bottom);
    }
    // An empty range: how far a value lies above it, of the whole range.
    EXPECT_EQ(m_Adapter.ToHost(40.0), PositionToHostInteger(0.5));
}

TEST_F(RTASParamAdapterTest, NamesAndTextsFitEveryLength) {
    constexpr const char* s_Names[] = {
        "#",          "I",           "It",          "ItL",          "ItLl",
        "ItLvl",      "IntLvl",      "InptLvl",     "InptLevl",     "InptLevel",
        "InputLevel", "Input Level", "Input Level", "OUT:InptLevel"};
    for (long length = 1; length < 14; ++length)
        EXPECT_EQ(ReadName(length), s_Names[length]);
    EXPECT_EQ(ReadName(0)[0], '#');
    EXPECT_EQ(ReadText(16, -12.5), "-12.5 dB");
    EXPECT_EQ(ReadText(7, -12.5), "-12.5dB");
    EXPECT_EQ(ReadText(2, -12.5), "-1");
    EXPECT_EQ(GetControl().ConvertStringToValue("-12.5"), m_Adapter.ToHost(-12.5));
    for (const char* unreadable : {"loud", "", static_cast<const char*>(nullptr)})
        EXPECT_EQ(GetControl().ConvertStringToValue(unreadable), m_Adapter.ToHost(10.0));
    for (const auto& [type, steps] : {std::pair{0, 2}, {3, 2}, {1, 8}, {2, 1024}, {9, 1024}}) {
        m_Adapter.Setup(nullptr, CParamInfo(EParamType(type), 0.0, 7.0, 0.0, "", "", ""), m_Setting,
                        1);
        EXPECT_EQ(GetControl().GetNumberOfSteps(), steps);
        EXPECT_EQ(GetControl().IsContinuous(), steps == 1024);
    }
}

} // namespace
} // namespace LatheExt::RTASPlugin
