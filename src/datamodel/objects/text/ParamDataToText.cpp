#include "datamodel/objects/text/ParamDataToText.h"

#include "datamodel/objects/text/TextParser.h"

#include <memory>

namespace Lathe::DataModel::Objects {

namespace {

struct STextPlaceholder {
    std::string_view m_Name;
    const char* (IConstParamInfo::*m_Getter)() const;
};

struct SNumberPlaceholder {
    std::string_view m_Name;
    double (IConstParamInfo::*m_Getter)() const;
};

constexpr STextPlaceholder TextPlaceholders[] = {
    {"{unit}", &IConstParamInfo::GetUnit},
    {"{comment}", &IConstParamInfo::GetDescription},
    {"{name}", &IConstParamInfo::GetName},
};

constexpr SNumberPlaceholder NumberPlaceholders[] = {
    {"{min}", &IConstParamInfo::GetMin},
    {"{max}", &IConstParamInfo::GetMax},
    {"{default}", &IConstParamInfo::GetDefault},
};

} // namespace

void CParamDataToText::SetInfo(const IConstParamInfo& info) {
    m_Info.Copy(info);
    NotifyChanged();
}

bool CParamDataToText::FromText(const char* text, double* value) const {
    return m_Info.GetValueToText().FromText(text, value) ||
           ParseParamText(text, m_Info.GetType(), value);
}

CParamDataToText* CParamDataToText::Clone() const {
    return new CParamDataToText(*this); // The caller's, by contract.
}

bool CParamDataToText::AppendPlaceholder(std::string_view name, double value,
                                         std::string& text) const {
    for (const STextPlaceholder& row : TextPlaceholders) {
        if (name == row.m_Name) {
            const char* replacement = (m_Info.*row.m_Getter)();
            text += replacement ? replacement : "";
            return true;
        }
    }
    for (const SNumberPlaceholder& row : NumberPlaceholders) {
        if (name == row.m_Name) {
            text += GetNumberText((m_Info.*row.m_Getter)());
            return true;
        }
    }
    if (name == "{text_value}") {
        const std::unique_ptr<char[]> own(m_Info.GetValueToText().ToText(value));
        text += own.get();
        return true;
    }
    return CParamValueToText::AppendPlaceholder(name, value, text);
}

} // namespace Lathe::DataModel::Objects
