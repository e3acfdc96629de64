// Proves what the host learns of the plug-in before there is an instance.
#include "hosts/rtas/RTASProcessGroup.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace LatheExt::RTASPlugin {
namespace {

using Lathe::Audio::DSP::CFilterProductInfo;
using Lathe::Audio::DSP::CProcessInfo;
// Identifier, category, input and output of each.
using Types = std::vector<std::array<long, 4>>;

Types GetTypes(const CEffectGroup& group) {
    Types types;
    for (const auto& type : group.GetEffectTypes())
        types.push_back({type->GetTypeId(), type->GetCategory(),
                         type->GetStemFormats().front().m_Input,
                         type->GetStemFormats().front().m_Output});
    return types;
}

TEST(RTASProcessGroupTest, ThisPlugInIsAStereoEqualiser) {
    const auto group = CProcessGroup::CreateProcessGroup();
    const auto& effects = dynamic_cast<const CEffectGroup&>(*group);
    EXPECT_STREQ(effects.GetManufacturerName(), "Marrow Sound");
    EXPECT_EQ(effects.GetManufacturerCode(), 0x6D727773U);
    EXPECT_STREQ(effects.GetProductNames(), "Marrow's Cairn EQ 4 Dual\nMWCairnEQ 4 Dual\n"
                                            "MWCrnEQ4Dual\nMWCnEQ4D\nMWCn");
    ASSERT_EQ(GetTypes(effects), (Types{{0, 1, 1, 1}}));
    EXPECT_EQ(effects.GetEffectTypes().front()->GetProductId(), 0x35343535U);
    EXPECT_EQ(MakeProductNames("A(Mono)(Dual) (Stereo)", "B(Mono)(Stereo)(Dual)"),
              "A M Dual\nB Dual\nB Dual\nB Dual\nBDul");
}

TEST(RTASProcessGroupTest, LayoutsBecomeTypes) {
    const auto check = [](const CProcessInfo& info, const Types& expected) {
        const CFilterProductInfo product("", "Name", "", "", "", 8, "");
        CRTASProcessGroup group(0, nullptr, product, info);
        group.SetMonoVariant(true);
        group.DefineTypes(true);
        EXPECT_EQ(GetTypes(group), expected);
    };
    constexpr long s_Effect = 0x800;
    check({1, 1}, {{0, s_Effect, 0, 0}});
    check({0, 5}, {{0, s_Effect, 5, 5}, {1, s_Effect, 0, 0}});
    check({8, 9}, {{0, s_Effect, 10, -100}, {1, s_Effect, 0, 0}});
    CProcessInfo alternatives(2, 2);
    for (const auto& [inputs, outputs] : {std::pair{2, 4}, {6, 7}, {0, 9}, {0, 0}}) {
        const int count = alternatives.m_IOConfigurations.GetCount();
        alternatives.m_IOConfigurations.SetCount(count + 1);
        auto& configuration = alternatives.m_IOConfigurations[count];
        configuration.m_Inputs.SetCount(inputs);
        configuration.m_Outputs.SetCount(outputs);
    }
    check(alternatives,
          {{0, s_Effect, 1, 3}, {1, s_Effect, 6, 8}, {5, s_Effect, 7, 9}, {3, s_Effect, 1, 1}});
}

} // namespace
} // namespace LatheExt::RTASPlugin
