#include "plugin/internals/PluginParamInfos.h"

#include "datamodel/objects/text/EnumToText.h"

namespace Lathe::Audio::Plugin {

CPluginParamInfos::CPluginParamInfos(const DSP::IConstParamInfos& filterInfos) {
    using namespace DataModel::Objects;
    m_BypassParamInfos[0] = CParamInfo(EParamType::Boolean, 0.0, 1.0, 0.0, "Bypass", "", "",
                                       new CEnumToText("Off;On", 0)); // The description's own.
    Attach(m_BypassParamInfos, filterInfos);
}

void CPluginParamInfos::ForgetFilter() {
    Attach(m_BypassParamInfos, m_NoParamInfos);
}

} // namespace Lathe::Audio::Plugin
