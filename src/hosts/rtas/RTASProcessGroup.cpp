#include "hosts/rtas/RTASProcessGroup.h"

#include "core/text/AbbreviateText.h"
#include "dsp/Filter.h"
#include "hosts/rtas/ChannelCounts.h"
#include "hosts/rtas/ProductConstants.h"
#include "hosts/rtas/RTASEffectProcess.h"
#include "plugin/interfaces/PluginGUIConnections.h"

#include <iterator>
#include <utility>

namespace LatheExt::RTASPlugin {

using namespace Lathe::Audio::DSP;

namespace {

constexpr int NameLength = 31;
constexpr int ShortLengths[] = {16, 12, 8, 4};

using Replacement = std::pair<const char*, const char*>;

// In order, each over the whole text.
constexpr Replacement NameReplacements[] = {{" (Stereo)", ""},    {" (Mono)", " M"},
                                            {" (Dual)", " Dual"}, {"(Stereo)", ""},
                                            {"(Mono)", " M"},     {"(Dual)", " Dual"}};
constexpr Replacement ShortNameReplacements[] = {{" (Stereo)", ""},    {" (Mono)", ""},
                                                 {" (Dual)", " Dual"}, {"(Stereo)", ""},
                                                 {"(Mono)", ""},       {"(Dual)", " Dual"}};

template <std::size_t count>
std::string ReplaceAll(std::string text, const Replacement (&replacements)[count]) {
    for (const auto& [from, to] : replacements) {
        const std::string pattern = from, replacement = to;
        for (std::size_t at = text.find(pattern); at != std::string::npos;
             at = text.find(pattern, at + replacement.size()))
            text.replace(at, pattern.size(), replacement);
    }
    return text;
}

struct SCategory {
    int m_Filter;
    std::uint32_t m_Library;
};
// Of all other filters it is 0.
constexpr SCategory Categories[] = {{1, 0x2},  {2, 0x2000}, {3, 0x1},  {4, 0x2000},
                                    {5, 0x20}, {7, 0x800},  {8, 0x800}};

constexpr long NoStem = -100;
constexpr int FamilyCount = 2;
// By the number of channels. The second family has other layouts of as many channels.
constexpr long Stems[FamilyCount][9] = {{-1, 0, 1, 2, 3, 5, 6, 8, 10},
                                        {NoStem, NoStem, NoStem, NoStem, 4, NoStem, 7, 9, NoStem}};

long GetStem(int family, int channels) {
    return channels < static_cast<int>(std::size(Stems[0])) ? Stems[family][channels] : NoStem;
}

// "T" and three letters, the lowest last.
long MakeTypeId(int seed) {
    std::uint32_t code = 'T';
    for (const int divisor : {26 * 26, 26, 1})
        code = code << 8 | static_cast<std::uint32_t>('a' + seed / divisor % 26);
    return static_cast<long>(code);
}

} // namespace

std::string MakeProductNames(const char* name, const char* shortName) {
    using Lathe::Core::AbbreviateText;
    std::string names = AbbreviateText(ReplaceAll(name, NameReplacements), NameLength, true);
    const std::string shortForm = ReplaceAll(shortName, ShortNameReplacements);
    for (const int length : ShortLengths)
        names += "\n" + AbbreviateText(shortForm, length, true);
    return names;
}

CRTASProcessGroup::CRTASProcessGroup(std::uint32_t productId, CreateFunction createProcess,
                                     const CFilterProductInfo& productInfo,
                                     const CProcessInfo& processInfo)
    : m_CreateProcess(createProcess),
      m_ProductId(productId),
      m_ProductInfo(productInfo),
      m_ProcessInfo(processInfo) {
    SetManufacturer(productInfo.GetCompany(), GetManufacturerId());
    SetProductName(MakeProductNames(productInfo.GetName(), productInfo.GetShortName()).c_str(),
                   true);
}

std::unique_ptr<CProcess> CRTASProcessGroup::CreateProcess(long) {
    return m_CreateProcess();
}

std::uint32_t CRTASProcessGroup::GetCategory() const {
    for (const SCategory& category : Categories) {
        if (category.m_Filter == m_ProductInfo.GetCategory())
            return category.m_Library;
    }
    return 0;
}

void CRTASProcessGroup::AddType(long typeId, long inputStem, long outputStem) {
    auto type = std::make_unique<CEffectTypeRTAS>(typeId, m_ProductId, GetCategory());
    type->DefineStemFormats(inputStem, outputStem, 0);
    AddEffectType(std::move(type));
}

void CRTASProcessGroup::DefineTypes(bool plainIdentifiers) {
    if (m_ProcessInfo.GetIOConfigurations().GetCount() == 0)
        DefineMainType();
    else
        DefineAlternatives(plainIdentifiers);
}

void CRTASProcessGroup::DefineMainType() {
    const SChannelCounts counts = GetNormalizedCounts(m_ProcessInfo);
    AddType(0, GetStem(0, counts.m_Inputs), GetStem(0, counts.m_Outputs));
    if (m_AddMonoVariant && counts != SChannelCounts{1, 1})
        AddType(1, GetStem(0, 1), GetStem(0, 1));
}

void CRTASProcessGroup::DefineAlternatives(bool plainIdentifiers) {
    const auto& configurations = m_ProcessInfo.GetIOConfigurations();
    const int count = configurations.GetCount();
    for (int i = 0; i < count; ++i) {
        const SChannelCounts counts = GetNormalizedCounts(configurations.GetElement(i));
        for (int family = 0; family < FamilyCount; ++family) {
            const long input = GetStem(family, counts.m_Inputs);
            const long output = GetStem(family, counts.m_Outputs);
            if (input != NoStem && output != NoStem)
                AddType(plainIdentifiers ? i + count * family : MakeTypeId(10 * i + family), input,
                        output);
        }
    }
}

} // namespace LatheExt::RTASPlugin

namespace {

using namespace LatheExt::RTASPlugin;

CProcessInfo MakeProcessInfo() {
    const std::unique_ptr<IFilter> filter = CreateFilter();
    CFilterInitInfo info;
    info.m_ResetToDefaults = true;
    info.m_MaxBlockSize = -1;
    info.m_MaxVariationsOrder = 2;
    filter->Init(44100.0, info);
    return dynamic_cast<const CProcessInfo&>(filter->GetProcessInfo());
}

std::unique_ptr<CProcess> CreateEffectProcess() {
    return std::make_unique<CRTASEffectProcess>();
}

} // namespace

std::unique_ptr<CProcessGroup> CProcessGroup::CreateProcessGroup() {
    static const CProcessInfo s_ProcessInfo = MakeProcessInfo();
    auto group = std::make_unique<CRTASProcessGroup>(GetProductId(), CreateEffectProcess,
                                                     GetProductInfo(), s_ProcessInfo);
    group->SetMonoVariant(HasMonoVariant());
    group->DefineTypes(GetGUIFeatures().m_Fourth);
    return group;
}
