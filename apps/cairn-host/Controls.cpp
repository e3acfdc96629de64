#include "cairn-host/Controls.h"

#include "cairn-host/Equaliser.h"
#include "cairn-host/HostInstance.h"
#include "cairn-host/Text.h"

#include "datamodel/objects/text/EnumToText.h"

#include <limits>

namespace CairnHost {
namespace {

constexpr int s_BypassControl = 1;
constexpr int s_FirstControl = 2;
constexpr int s_TextLength = 31;

} // namespace

CParameterTable DescribeControls(const CEqualiser& equaliser) {
    static const Lathe::DataModel::Objects::CEnumToText states("Off;On", 0);
    std::vector<SParameter> parameters = equaliser.GetParameters().GetParameters();
    parameters.push_back({"Bypass", "", 0.0, 1.0, 0.0, true, &states});
    return CParameterTable(std::move(parameters));
}

int GetControlNumber(const CParameterTable& table, int parameter) {
    const bool isBypass = parameter + 1 == static_cast<int>(table.GetParameters().size());
    return isBypass ? s_BypassControl : parameter + s_FirstControl;
}

TResult<std::int32_t> ToControlValue(const CHostInstance& instance, const CParameterTable& table,
                                     const SSetting& setting) {
    using CLimits = std::numeric_limits<std::int32_t>;
    const int control = GetControlNumber(table, setting.m_Parameter);
    const SParameter& parameter =
        table.GetParameters()[static_cast<std::size_t>(setting.m_Parameter)];
    const std::string text = ValueToText(parameter, setting.m_Value);
    TResult<std::int32_t> value = instance.TextToControl(
        control, parameter.m_Discrete ? text : FormatExactly(setting.m_Value));
    if (!value || (*value != CLimits::min() && *value != CLimits::max()))
        return value;
    const std::string reached = instance.ControlToText(control, *value, s_TextLength);
    if (reached != (parameter.m_Unit.empty() ? text : text + " " + parameter.m_Unit))
        return SFault{'"' + parameter.m_Name + "\" can't be " + text +
                      ": its controller map ends at " + reached};
    return value;
}

} // namespace CairnHost
