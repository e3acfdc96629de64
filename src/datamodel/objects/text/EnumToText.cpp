#include "datamodel/objects/text/EnumToText.h"

#include "datamodel/objects/text/TextParser.h"

#include <cmath>
#include <string_view>

namespace Lathe::DataModel::Objects {

void CEnumToText::Set(const char* names, int firstValue) {
    m_FirstValue = firstValue;
    m_Names.SetCount(0);
    if (!names || !*names)
        return;
    std::string_view rest = names;
    for (bool more = true; more;) {
        const std::size_t end = rest.find(';');
        Core::CCharString name;
        name.Append(rest.substr(0, end));
        m_Names.Append(name);
        more = end != std::string_view::npos;
        if (more)
            rest.remove_prefix(end + 1);
    }
}

char* CEnumToText::ToText(double value) const {
    const double index = std::trunc(value + 0.5) - m_FirstValue;
    // A NaN is neither.
    const bool inside = index >= 0.0 && index < m_Names.GetCount();
    return Core::NewText(inside ? m_Names[static_cast<int>(index)].GetText() : "Out Of Bounds");
}

bool CEnumToText::FromText(const char* text, double* value) const {
    if (!text)
        return false;
    for (int i = 0; i < m_Names.GetCount(); ++i) {
        if (m_Names[i] == text) {
            *value = static_cast<double>(i) + m_FirstValue;
            return true;
        }
    }
    return ParseParamText(text, EParamType::Integer, value);
}

CEnumToText* CEnumToText::Clone() const {
    return new CEnumToText(*this); // The caller's, by contract.
}

} // namespace Lathe::DataModel::Objects
