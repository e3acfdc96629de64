// The parameters that a user can name, and the reading of names and values as users type them.
#pragma once

#include "cairn-host/Result.h"

#include "datamodel/objects/text/ParamText.h"

#include <string>
#include <string_view>
#include <vector>

namespace CairnHost {

struct SParameter {
    std::string m_Name;
    // Empty when the value has none.
    std::string m_Unit;
    double m_Min;
    double m_Max;
    double m_Default;
    // Values are whole numbers, each perhaps with a name of its own.
    bool m_Discrete;
    // Lives as long as whatever described the parameter.
    const Lathe::DataModel::Objects::IParamValueToText* m_ValueToText;
};

struct SSetting {
    int m_Parameter;
    double m_Value;
};

std::string ValueToText(const SParameter& parameter, double value);
// "-40 to 40 dB", or the names of the values: "Stereo or Mid-Side".
std::string DescribeRange(const SParameter& parameter);

class CParameterTable {
public:
    explicit CParameterTable(std::vector<SParameter> parameters)
        : m_Parameters(std::move(parameters)) {}

    const std::vector<SParameter>& GetParameters() const { return m_Parameters; }

    // The index of the parameter with that name, letter case aside, or with that number.
    TResult<int> Find(std::string_view nameOrIndex) const;
    // The parameter's own text conversion decides what the text means. It stops at the first letter
    // that it can't use; here nothing but the unit may be left over, so that "2k" isn't taken
    // for 2.
    TResult<double> ReadValue(int parameter, std::string_view text) const;
    // "NAME=VALUE"; the fault names the option.
    TResult<SSetting> ReadSetting(const std::string& text) const;
    // Up to the first that is at fault.
    TResult<std::vector<SSetting>> ReadSettings(const std::vector<std::string>& texts) const;

private:
    std::vector<SParameter> m_Parameters;
};

} // namespace CairnHost
