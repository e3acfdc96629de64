// Proves what the host learns of the plug-in before there is an instance.
#include "hosts/rtas/RTASProcessGroup.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace LatheExt::RTASPlugin {
namespace {

using Lathe::Audio::DSP::CFilterProductInfo;
using Lathe::Audio::DSP::CIOConfiguration;
using Lathe::Audio::DSP::CProcessInfo;

struct SType {
    bool operator==(const SType&) const = default;

    long m_Id, m_Input, m_Output;
};

std::vector<SType> GetTypes(const CEffectGroup& group) {
    std::vector<SType> types;
    for (const auto& type : group.GetEffectTypes()) {
        EXPECT_EQ(type->GetStemFormats().size(), 1U);
        const SStemFormats& stems = type->GetStemFormats().front();
        types.push_back({type->GetTypeId(), stems.m_Input, stems.m_Output});
    }
    return types;
}

CRTASProcessGroup MakeGroup(const CProcessInfo& processInfo, int category = 3) {
    return {0, nullptr, CFilterProductInfo("", "Name", "", "", "", category, ""), processInfo};
}

TEST(RTASProcessGroupTest, ThisPlugInIsAStereoEqualiser) {
    for (int i = 0; i < 2; ++i) {
        const auto group = CProcessGroup::CreateProcessGroup();
        const auto& effects = dynamic_cast<const CEffectGroup&>(*group);
        EXPECT_STREQ(effects.GetManufacturerName(), "Marrow Sound");
        EXPECT_EQ(effects.GetManufacturerCode(), 0x6D727773U);
        EXPECT_STREQ(effects.GetProductNames(), "Marrow's Cairn EQ 4 Dual\nMWCairnEQ 4 Dual\n"
                                                "MWCrnEQ4Dual\nMWCnEQ4D\nMWCn");
        ASSERT_EQ(GetTypes(effects), (std::vector<SType>{{0, 1, 1}}));
        EXPECT_EQ(effects.GetEffectTypes().front()->GetProductId(), 0x35343535U);
        EXPECT_EQ(effects.GetEffectTypes().front()->GetCategory(), 1U);
    }
}

TEST(RTASProcessGroupTest, NamesLoseTheirBracketsInOrder) {
    EXPECT_EQ(MakeProductNames("Thing (Mono)", "Th (Mono)"), "Thing M\nTh\nTh\nTh\nTh");
    EXPECT_EQ(MakeProductNames("A(Mono)(Dual) (Stereo)", "B(Mono)(Stereo)(Dual)"),
              "A M Dual\nB Dual\nB Dual\nB Dual\nBDul");
}

TEST(RTASProcessGroupTest, LayoutsBecomeStems) {
    constexpr std::pair<std::pair<int, int>, std::pair<long, long>> s_Layouts[] = {
        {{1, 1}, {0, 0}}, {{0, 0}, {1, 1}}, {{0, 5}, {5, 5}},
        {{4, 0}, {3, 3}}, {{6, 7}, {6, 8}}, {{8, 9}, {10, -100}}};
    for (const auto& [channels, stems] : s_Layouts) {
        CRTASProcessGroup group = MakeGroup(CProcessInfo(channels.first, channels.second));
        group.SetMonoVariant(true);
        group.DefineTypes(true);
        std::vector<SType> expected{{0, stems.first, stems.second}};
        if (channels != std::pair{1, 1})
            expected.push_back({1, 0, 0});
        EXPECT_EQ(GetTypes(group), expected);
    }
}

TEST(RTASProcessGroupTest, AlternativesComeInBothFamilies) {
    CProcessInfo info(2, 2);
    info.m_IOConfigurations.SetCount(3);
    for (const auto& [i, inputs, outputs] :
         {std::array{0, 2, 4}, std::array{1, 6, 7}, std::array{2, 0, 9}}) {
        info.m_IOConfigurations[i].m_Inputs.SetCount(inputs);
        info.m_IOConfigurations[i].m_Outputs.SetCount(outputs);
    }
    CRTASProcessGroup group = MakeGroup(info);
    group.DefineTypes(true);
    EXPECT_EQ(GetTypes(group), (std::vector<SType>{{0, 1, 3}, {1, 6, 8}, {4, 7, 9}}));
    CRTASProcessGroup coded = MakeGroup(info);
    coded.DefineTypes(false);
    const std::vector<SType> types = GetTypes(coded);
    ASSERT_EQ(types.size(), 3U);
    EXPECT_TRUE(types[0].m_Id != types[1].m_Id && types[1].m_Id != types[2].m_Id &&
                types[0].m_Id != types[2].m_Id);
}

TEST(RTASProcessGroupTest, CategoriesAreTheLibrarys) {
    constexpr std::uint32_t s_Categories[] = {0,    0x2, 0x2000, 0x1,   0x2000,
                                              0x20, 0,   0x800,  0x800, 0};
    for (int category = 0; category < 10; ++category) {
        CRTASProcessGroup group = MakeGroup(CProcessInfo(2, 2), category);
        group.DefineTypes(true);
        EXPECT_EQ(group.GetEffectTypes().front()->GetCategory(), s_Categories[category]);
    }
}

} // namespace
} // namespace LatheExt::RTASPlugin
