#include "datamodel/objects/text/TextParser.h"

#include "core/text/NumericLocale.h"

#include <cstdlib>
#include <cstring>

namespace Lathe::DataModel::Objects {

namespace {

struct SSwitchWord {
    const char* m_Word;
    double m_Value;
};

constexpr SSwitchWord SwitchWords[] = {{"true", 1.0}, {"yes", 1.0}, {"false", 0.0}, {"no", 0.0}};

bool ParseSwitchWord(const char* text, double* value) {
    for (const SSwitchWord& row : SwitchWords) {
        if (std::strcmp(text, row.m_Word) == 0) {
            *value = row.m_Value;
            return true;
        }
    }
    return false;
}

} // namespace

bool ParseParamText(const char* text, EParamType type, double* value) {
    if (!text)
        return false;
    const Core::CNumericLocaleScope locale;
    char* end = nullptr;
    const double number = IsDiscrete(type) ? static_cast<double>(std::strtol(text, &end, 10))
                                           : std::strtod(text, &end);
    if (end == text)
        return IsSwitch(type) && ParseSwitchWord(text, value);
    *value = number;
    return true;
}

} // namespace Lathe::DataModel::Objects
