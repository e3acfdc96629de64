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

// A library whose host answers at once, with an output as its only control.
class RTASParamAdapterTest : public testing::Test, public CProcess {
protected:
    void SetUp() override {
        m_Setting.SetMin(-40.0);
        m_Setting.SetMax(40.0);
        m_Adapter.Setup(this,
                        CParamInfo(EParamType::Float, -40.0, 40.0, 10.0, "Input Level", "dB", "",
                                   new CParamValueToText("%+.1f", false, "{value}")),
                        m_Setting, 1);
        CProcess::SetUp({.m_Calls = m_Log.MakeCalls()});
        AddControl(std::make_unique<CRTASPluginControl>(&m_Adapter, true));
        m_Adapter.GetValueChangedEvent().AddCommand(m_Changes);
    }
    void OnControlValueChanged(long control, long value) LATHE_REALTIME override {
        m_Adapter.SetFromHost(value);
        CProcess::OnControlValueChanged(control, value);
    }
    // So often the value-changed event ran since the last call, and this the host heard.
    void CheckTold(double value, int changes, const std::string& calls) {
        EXPECT_EQ(m_Adapter.GetValue(), value);
        EXPECT_EQ(m_Changes.m_Count.exchange(0), changes);
        EXPECT_EQ(m_Log.Take(), calls);
    }
    // What is in the text's room, which has one character more than the length.
    std::string Read(long length, bool isName) {
        std::string text(64, '#');
        if (isName)
            GetControl(1)->GetNameOfLength(text.data(), length);
        else
            GetControl(1)->GetValueString(text.data(), length, m_Adapter.ToHost(-12.5));
        EXPECT_EQ(text[static_cast<std::size_t>(length) + 1], '#');
        return text.c_str();
    }

    SHostLog m_Log;
    Plugin::CMIDICCSetting m_Setting;
    CRTASParamAdapter m_Adapter;
    Plugin::CCountCommand m_Changes;
};

TEST_F(RTASParamAdapterTest, EachChangeIsToldOnce) {
    for (const double value : {40.0, 40.0, std::nan("")})
        m_Adapter.SetValue(value);
    CheckTold(40.0, 1, "1=2147483647 ");
    m_Adapter.SetValueQuietly(1.0 / 3.0);
    // What comes back doesn't round what was set.
    m_Adapter.SetFromHost(GetControl(1)->GetValue());
    CheckTold(1.0 / 3.0, 1, "");
    m_Adapter.SetFromHost(s_Bottom);
    CheckTold(-40.0, 1, "");
    m_Adapter.Release();
    m_Adapter.Capture();
    m_Adapter.Capture();
    m_Adapter.Release();
    CheckTold(-40.0, 0, "touch1 release1 ");
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
    for (const auto& [length, name] : {std::pair{1, "I"},
                                       {5, "ItLvl"},
                                       {9, "InptLevel"},
                                       {10, "InputLevel"},
                                       {12, "Input Level"},
                                       {13, "OUT:InptLevel"}})
        EXPECT_EQ(Read(length, true), name);
    EXPECT_EQ(Read(0, true)[0], '#');
    EXPECT_EQ(Read(16, false) + Read(7, false) + Read(2, false), "-12.5 dB-12.5dB-1");
    EXPECT_EQ(GetControl(1)->ConvertStringToValue("-12.5"), m_Adapter.ToHost(-12.5));
    for (const char* unreadable : {"loud", "", static_cast<const char*>(nullptr)})
        EXPECT_EQ(GetControl(1)->ConvertStringToValue(unreadable), m_Adapter.ToHost(10.0));
    for (const auto& [type, steps] : {std::pair{0, 2}, {3, 2}, {1, 8}, {2, 1024}, {9, 1024}}) {
        m_Adapter.Setup(this, CParamInfo(EParamType(type), 0.0, 7.0, 0.0, "", "", ""), m_Setting,
                        1);
        EXPECT_EQ(GetControl(1)->GetNumberOfSteps(), steps);
        EXPECT_EQ(GetControl(1)->IsContinuous(), steps == 1024);
    }
}

} // namespace
} // namespace LatheExt::RTASPlugin
