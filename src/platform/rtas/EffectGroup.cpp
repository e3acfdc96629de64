#include "platform/rtas/EffectGroup.h"

#include <string_view>
#include <utility>

// Options that are here for the plug-in's sake: the library knows none.
void CEffectType::DefineStemFormats(long input, long output, long /*options*/) {
    m_StemFormats.push_back({input, output});
}

void CEffectGroup::SetManufacturer(const char* name, std::uint32_t code) {
    m_ManufacturerName = name;
    m_ManufacturerCode = code;
}

void CEffectGroup::SetProductName(const char* names, bool usesForms) {
    const std::string_view text = names ? names : "";
    m_ProductNames = Lathe::Core::CCharString();
    m_ProductNames.Append(usesForms ? text : text.substr(0, text.find('\n')));
}

void CEffectGroup::AddEffectType(std::unique_ptr<CEffectType> type) {
    if (type)
        m_Types.push_back(std::move(type));
}
