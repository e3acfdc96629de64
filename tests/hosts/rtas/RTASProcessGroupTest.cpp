// Proves what the host learns of the plug-in before there is an instance.
#include "hosts/rtas/RTASProcessGroup.h"

#include <gtest/gtest.h>

#include <sstream>

namespace LatheExt::RTASPlugin {
namespace {

using Lathe::Audio::DSP::CFilterProductInfo;
using Lathe::Audio::DSP::CProcessInfo;
// "ID CATEGORY INPUT OUTPUT, " of each.
std::string GetTypes(const CEffectGroup& group) {
    std::ostringstream types;
    for (const auto& type : group.GetEffectTypes())
        types << type->GetTypeId() << ' ' << type->GetCategory() << ' '
              << type->GetStemFormats()[0].m_Input << ' ' << type->GetStemFormats()[0].m_Output
              << ", ";
    return types.str();
}

TEST(RTASProcessGroupTest, ThisPlugInIsAStereoEqualiser) {
    const auto group = CProcessGroup::CreateProcessGroup();
    const auto& effects = dynamic_cast<const CEffectGroup&>(*group);
    EXPECT_STREQ(effects.GetManufacturerName(), "Marrow Sound");
    EXPECT_EQ(effects.GetManufacturerCode(), 0x6D727773U);
    EXPECT_STREQ(effects.GetProductNames(), "Marrow's Cairn EQ 4 Dual\nMWCairnEQ 4 Dual\n"
                                            "MWCrnEQ4Dual\nMWCnEQ4D\nMWCn");
    ASSERT_EQ(GetTypes(effects), "0 1 1 1, ");
    EXPECT_EQ(effects.GetEffectTypes().front()->GetProductId(), 0x35343535U);
    EXPECT_EQ(MakeProductNames("A(Mono)(Dual) (Stereo)", "B(Mono)(Stereo)(Dual)"),
              "A M Dual\nB Dual\nB Dual\nB Dual\nBDul");
}

TEST(RTASProcessGroupTest, LayoutsBecomeTypes) {
    const auto check = [](const CProcessInfo& info, const char* expected) {
        const CFilterProductInfo product("", "Name", "", "", "", 8, "");
        CRTASProcessGroup group(0, nullptr, product, info);
        group.SetMonoVariant(true);
        group.DefineTypes(true);
        EXPECT_EQ(GetTypes(group), expected);
    };
    check({1, 1}, "0 2048 0 0, ");
    check({0, 5}, "0 2048 5 5, 1 2048 0 0, ");
    check({8, 9}, "0 2048 10 -100, 1 2048 0 0, ");
    CProcessInfo alternatives(2, 2);
    constexpr int s_Channels[][2] = {{2, 4}, {6, 7}, {0, 9}, {0, 0}};
    alternatives.m_IOConfigurations.SetCount(4);
    for (int i = 0; i < 4; ++i) {
        alternatives.m_IOConfigurations[i].m_Inputs.SetCount(s_Channels[i][0]);
        alternatives.m_IOConfigurations[i].m_Outputs.SetCount(s_Channels[i][1]);
    }
    check(alternatives, "0 2048 1 3, 1 2048 6 8, 5 2048 7 9, 3 2048 1 1, ");
}

} // namespace
} // namespace LatheExt::RTASPlugin
