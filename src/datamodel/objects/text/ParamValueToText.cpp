#include "datamodel/objects/text/ParamValueToText.h"

#include "core/SaturatingCast.h"
#include "datamodel/objects/text/NumberPrinter.h"
#include "datamodel/objects/text/TextParser.h"

#include <cmath>
#include <iterator>

namespace Lathe::DataModel::Objects {

namespace {

constexpr int FirstPrefix = -3;
constexpr int LastPrefix = 4;
// Powers of a thousand from FirstPrefix to LastPrefix; the micro sign is that of Latin-1.
constexpr const char* Prefixes[] = {"p", "\xB5", "m", "", "k", "M", "G", "T"};
static_assert(std::size(Prefixes) == LastPrefix - FirstPrefix + 1);

double RoundToDigits(double value, int digits) {
    if (value < 0.0)
        return -RoundToDigits(-value, digits);
    if (!(value > 0.0))
        return value;
    const double factor = std::pow(10.0, digits - std::trunc(std::log10(value) + 1.0));
    const double rounded = std::floor(value * factor + 0.5) / factor;
    // The factor of the very smallest numbers overflows, and an infinite value has none.
    return std::isfinite(rounded) ? rounded : value;
}

// The prefix to print, with the value brought to its unit.
const char* TakePrefix(double& value) {
    const int thousands = Core::TruncateToInt(std::log10(value)) / 3;
    // Zero and infinite values end up outside; negative ones have a NaN, which truncates to 0.
    if (thousands < FirstPrefix || thousands > LastPrefix)
        return "";
    value *= static_cast<double>(std::pow(10.0f, static_cast<float>(-3 * thousands)));
    return Prefixes[thousands - FirstPrefix];
}

void DropTrailingZeros(std::string& text) {
    if (text.find_first_of(".,") == std::string::npos)
        return;
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.' || text.back() == ',')
        text.pop_back();
}

} // namespace

char* CParamValueToText::ToText(double value) const {
    std::string text;
    for (std::string_view rest = m_Pattern.GetText(); !rest.empty();) {
        const std::size_t close = rest.starts_with('{') ? rest.find('}') : std::string_view::npos;
        std::string_view part = rest.substr(0, close == std::string_view::npos ? 1 : close + 1);
        if (rest.starts_with("{{")) {
            part = rest.substr(0, 2);
            text += '{';
        } else if (!AppendPlaceholder(part, value, text)) {
            text += part;
        }
        rest.remove_prefix(part.size());
    }
    return Core::NewText(text);
}

bool CParamValueToText::FromText(const char* text, double* value) const {
    return ParseParamText(text, EParamType::Float, value);
}

CParamValueToText* CParamValueToText::Clone() const {
    return new CParamValueToText(*this); // The caller's, by contract.
}

bool CParamValueToText::AppendPlaceholder(std::string_view name, double value,
                                          std::string& text) const {
    if (name != "{value}")
        return false;
    text += GetNumberText(value);
    return true;
}

std::string CParamValueToText::GetNumberText(double value) const {
    if (m_SignificantDigits > 0)
        value = RoundToDigits(value, m_SignificantDigits);
    const char* prefix = m_MetricPrefix ? TakePrefix(value) : "";
    std::string text = PrintNumber(m_Format.GetText(), value);
    if (m_DropTrailingZeros)
        DropTrailingZeros(text);
    if (m_SpaceBeforePrefix)
        text += ' ';
    return text + prefix;
}

} // namespace Lathe::DataModel::Objects
