#include "cairn-host/Parameters.h"

#include "cairn-host/Text.h"

#include <cmath>
#include <cstdlib>
#include <memory>

namespace CairnHost {
namespace {

// How many names of values are listed in a message.
constexpr double s_MaxListedValues = 8.0;

// The conversion knows the text as one of its names, or as a number that the user finished.
bool IsReadWhole(const SParameter& parameter, const std::string& text, double value) {
    if (text == ValueToText(parameter, value))
        return true;
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    if (end == text.c_str())
        return true; // A word, such as "yes": the conversion takes words only as a whole.
    if (number < value || number > value)
        return false; // "0.7" read as the whole number 0.
    const std::string_view rest = Trim(end);
    return rest.empty() || EqualsIgnoringCase(rest, parameter.m_Unit);
}

} // namespace

std::string ValueToText(const SParameter& parameter, double value) {
    const std::unique_ptr<char[]> text(parameter.m_ValueToText->ToText(value));
    return text.get();
}

std::string DescribeRange(const SParameter& parameter) {
    if (parameter.m_Discrete && parameter.m_Max - parameter.m_Min < s_MaxListedValues) {
        std::string names = ValueToText(parameter, parameter.m_Min);
        for (double value = parameter.m_Min + 1.0; value <= parameter.m_Max; value += 1.0)
            names += (value < parameter.m_Max ? ", " : " or ") + ValueToText(parameter, value);
        return names;
    }
    std::string range = FormatNumber(parameter.m_Min) + " to " + FormatNumber(parameter.m_Max);
    if (!parameter.m_Unit.empty())
        range += " " + parameter.m_Unit;
    return range;
}

TResult<int> CParameterTable::Find(std::string_view nameOrIndex) const {
    const std::string_view wanted = Trim(nameOrIndex);
    const int count = static_cast<int>(m_Parameters.size());
    std::string similar;
    for (int i = 0; i < count; ++i) {
        const std::string& name = m_Parameters[static_cast<std::size_t>(i)].m_Name;
        if (EqualsIgnoringCase(name, wanted))
            return i;
        if (!wanted.empty() && name.size() > wanted.size() &&
            EqualsIgnoringCase(std::string_view(name).substr(0, wanted.size()), wanted))
            similar += (similar.empty() ? "\"" : " or \"") + name + '"';
    }
    if (const auto index = ParseInteger(wanted); index && *index >= 0 && *index < count)
        return static_cast<int>(*index);
    if (similar.empty())
        similar = "a name or an index from 0 to " + std::to_string(count - 1) +
                  ", as \"cairn-host params\" lists them";
    return SFault{"no parameter is called \"" + std::string(wanted) + "\": expected " + similar};
}

TResult<double> CParameterTable::ReadValue(int index, std::string_view given) const {
    const SParameter& parameter = m_Parameters[static_cast<std::size_t>(index)];
    const std::string text(Trim(given));
    const auto refuse = [&](const char* what) {
        return SFault{'"' + text + "\" " + what + " \"" + parameter.m_Name + "\": expected " +
                      DescribeRange(parameter)};
    };
    double value = 0.0;
    if (!parameter.m_ValueToText->FromText(text.c_str(), &value) ||
        !IsReadWhole(parameter, text, value))
        return refuse("can't be read as a value of");
    // Written so that NaN, which has no order, is refused too.
    if (!(value >= parameter.m_Min && value <= parameter.m_Max))
        return refuse("is out of the range of");
    return value;
}

TResult<SSetting> CParameterTable::ReadSetting(const std::string& text) const {
    // No name holds an '='.
    const std::size_t equals = text.find('=');
    const auto refuse = [&](const std::string& why) {
        return SFault{"--set \"" + text + "\": " + why};
    };
    if (equals == std::string::npos)
        return refuse("expected NAME=VALUE, such as \"Mid (1)=+6\"");
    const TResult<int> parameter = Find(std::string_view(text).substr(0, equals));
    if (!parameter)
        return refuse(parameter.GetFault().m_Text);
    const TResult<double> value = ReadValue(*parameter, std::string_view(text).substr(equals + 1));
    if (!value)
        return refuse(value.GetFault().m_Text);
    return SSetting{*parameter, *value};
}

TResult<std::vector<SSetting>>
CParameterTable::ReadSettings(const std::vector<std::string>& texts) const {
    std::vector<SSetting> settings;
    for (const std::string& text : texts) {
        const TResult<SSetting> setting = ReadSetting(text);
        if (!setting)
            return setting.GetFault();
        settings.push_back(*setting);
    }
    return settings;
}

} // namespace CairnHost
