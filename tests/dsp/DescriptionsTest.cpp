// Proves what a filter says of its connections and of itself as a product, and when the latter
// tells of changes.

#include "core/events/Command.h"
#include "dsp/FilterProductInfo.h"
#include "dsp/ProcessInfo.h"

#include <gtest/gtest.h>

#include <functional>

namespace Lathe::Audio::DSP {

namespace {

TEST(ProcessInfo, IsNamedMainAndTakesOnlyTheNamesOfItsChannels) {
    const CProcessInfo plain(1, 2);
    EXPECT_STREQ(plain.GetName(), "Main");
    EXPECT_EQ(plain.GetDefaultIOConfiguration(), -1);
    EXPECT_EQ(plain.GetIOConfigurations().GetCount(), 0);
    EXPECT_EQ(plain.GetInputs().GetCount(), 1);
    EXPECT_EQ(plain.GetOutputs().GetCount(), 2);
    EXPECT_STREQ(plain.GetInputs().GetElement(0).GetName(), "");

    const CInputInfo inputs[] = {CInputInfo("Left", "first"), CInputInfo("Right", "second")};
    CProcessInfo named(2, 1, inputs, nullptr);
    named.m_InputBuses.SetCount(1);
    named.m_InputBuses[0] = CBusInfo("Pair", "", 0, 2);
    named.m_IOConfigurations.SetCount(1);
    named.m_IOConfigurations[0].m_Inputs.SetCount(3);

    const CProcessInfo copy(named);
    EXPECT_STREQ(copy.GetInputs().GetElement(1).GetName(), "Right");
    EXPECT_STREQ(copy.GetInputs().GetElement(1).GetDescription(), "");
    EXPECT_STREQ(copy.GetOutputs().GetElement(0).GetName(), "");
    EXPECT_EQ(copy.GetInputBuses().GetElement(0).GetChannelsCount(), 2);
    EXPECT_EQ(copy.GetIOConfigurations().GetElement(0).GetInputs().GetCount(), 3);
}

class FilterProductInfo : public testing::Test {
protected:
    FilterProductInfo() { m_Info.GetChangedEvent().AddCommand(m_OnChanged); }
    ~FilterProductInfo() override { m_Info.GetChangedEvent().RemoveCommand(m_OnChanged); }

    void CountChange() { ++m_Changes; }

    CFilterProductInfo m_Info{"Company", "Name", "1.0", "Copyright", "Description", 9, ""};
    int m_Changes = 0;
    Core::TCommand<FilterProductInfo> m_OnChanged{*this, &FilterProductInfo::CountChange};
};

TEST_F(FilterProductInfo, TheNameStandsInForAShortOne) {
    EXPECT_STREQ(m_Info.GetShortName(), "Name");
    m_Info.SetName("Other");
    EXPECT_STREQ(m_Info.GetShortName(), "Other");
    m_Info.SetShortName("Short");
    EXPECT_STREQ(m_Info.GetShortName(), "Short");
    m_Info.SetShortName(nullptr);
    EXPECT_STREQ(m_Info.GetShortName(), "Other");
}

TEST_F(FilterProductInfo, EachSetterNotifiesOnceAndOnlyOnAChange) {
    using CInfo = CFilterProductInfo;
    const struct {
        void (CInfo::*m_Set)(const char*);
        const char* (CInfo::*m_Get)() const;
    } texts[] = {{&CInfo::SetCompany, &CInfo::GetCompany},
                 {&CInfo::SetName, &CInfo::GetName},
                 {&CInfo::SetShortName, &CInfo::GetShortName},
                 {&CInfo::SetVersion, &CInfo::GetVersion},
                 {&CInfo::SetCopyright, &CInfo::GetCopyright},
                 {&CInfo::SetDescription, &CInfo::GetDescription}};
    int expected = 0;
    for (const auto& text : texts) {
        const char first[] = "new";
        const char second[] = "new";
        (m_Info.*text.m_Set)(first);
        EXPECT_EQ(m_Changes, ++expected);
        (m_Info.*text.m_Set)(second);
        EXPECT_EQ(m_Changes, expected) << "texts compare by letters";
        EXPECT_STREQ((m_Info.*text.m_Get)(), "new");
    }
    m_Info.SetCategory(9);
    EXPECT_EQ(m_Changes, expected);
    m_Info.SetCategory(3);
    EXPECT_EQ(m_Changes, expected + 1);
}

TEST_F(FilterProductInfo, AssignNotifiesForEachValueThatDiffers) {
    const CFilterProductInfo other("Company", "New name", "2.0", "Copyright", "New", 3, "Short");
    m_Info.Assign(other);
    EXPECT_EQ(m_Changes, 5);
    EXPECT_STREQ(m_Info.GetName(), "New name");
    EXPECT_STREQ(m_Info.GetShortName(), "Short");
    EXPECT_STREQ(m_Info.GetVersion(), "2.0");
    EXPECT_STREQ(m_Info.GetDescription(), "New");
    EXPECT_EQ(m_Info.GetCategory(), 3);
    m_Info.Assign(other);
    EXPECT_EQ(m_Changes, 5);
}

} // namespace

} // namespace Lathe::Audio::DSP
